#include "pgn/move_spelling.h"

#include <array>
#include <cstddef>

namespace ombrin {

namespace {

constexpr std::string_view FIGURINE_START = "\xe2\x99";
constexpr unsigned char FIRST_FIGURINE = 0x94;
// From the white king to the black pawn, which have no letter.
constexpr std::string_view LETTERS = "KQRBN KQRBN ";
constexpr std::array<std::string_view, 2> SHAPES = {"\xef\xb8\x8e", "\xef\xb8\x8f"};
constexpr std::array<std::string_view, 2> EN_PASSANT = {"e.p", "ep"};

// What stands at the front of the text in place of a letter: how many bytes, and for which letter.
struct Figurine {
  std::size_t size = 0;  // 0: there is none
  char letter = ' ';     // a blank stands for nothing
};

Figurine figurineAt(std::string_view text) {
  for (const std::string_view shape : SHAPES) {
    if (text.starts_with(shape)) return {shape.size()};
  }
  if (!text.starts_with(FIGURINE_START) || text.size() == FIGURINE_START.size()) return {};
  const auto number = static_cast<unsigned char>(text[FIGURINE_START.size()]) - FIRST_FIGURINE;
  if (number < 0 || number >= static_cast<int>(LETTERS.size())) return {};
  return {FIGURINE_START.size() + 1, LETTERS[static_cast<std::size_t>(number)]};
}

}  // namespace

std::string usualSpelling(std::string_view word) {
  for (const std::string_view mark : EN_PASSANT) {
    // Alone, or behind the move, where nothing but check signs can follow.
    const std::size_t at = word.find(mark);
    if (at == 0 || (at != std::string_view::npos && at >= 4)) word = word.substr(0, at);
  }
  std::string text;
  const bool castles = isCastlingWithZeros(word);
  while (!word.empty()) {
    if (const Figurine figurine = figurineAt(word); figurine.size > 0) {
      if (figurine.letter != ' ') text += figurine.letter;
      word.remove_prefix(figurine.size);
    } else {
      text += castles && word.front() == '0' ? 'O' : word.front();
      word.remove_prefix(1);
    }
  }
  return text;
}

}  // namespace ombrin
