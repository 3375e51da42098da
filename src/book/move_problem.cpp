#include "book/move_problem.h"

#include <array>
#include <cstdint>

#include "board/notation.h"

namespace ombrin {

namespace {

constexpr std::string_view PIECES = "NBRQK";
constexpr std::array<const char*, 5> NAMES = {"knight", "bishop", "rook", "queen", "king"};

bool isSquare(std::string_view text) {
  return text.size() == 2 && text[0] >= 'a' && text[0] <= 'h' && text[1] >= '1' && text[1] <= '8';
}

// How many pieces can go to the square: parseMove() is asked about each square that they may stand
// on.
int countOrigins(Board& board, std::string_view piece, std::string_view target) {
  int count = 0;
  for (int index = 0; index < 64; ++index) {
    const Square from = Square::fromIndex64(index);
    std::string text(piece);
    text += static_cast<char>('a' + from.file());
    text += static_cast<char>('1' + from.rank());
    text += target;
    if (!parseMove(board, text).isNull()) ++count;
  }
  return count;
}

}  // namespace

bool hasForeignCharacter(std::string_view text) {
  return text.find_first_not_of("abcdefgh12345678NBRQKPnqrOoxO!?+#=- ") != std::string_view::npos;
}

std::string moveProblem(Board& board, std::string_view text) {
  if (text == "--" || text == "Z0") return "a null move";
  if (hasForeignCharacter(text)) return "not a move";
  while (!text.empty() && std::string_view("+#!?").find(text.back()) != std::string_view::npos) {
    text.remove_suffix(1);
  }
  const std::size_t letter = text.empty() ? std::string_view::npos : PIECES.find(text.front());
  if (letter == std::string_view::npos || text.size() < 3) return "illegal move";
  const std::string_view target = text.substr(text.size() - 2);
  if (!isSquare(target)) return "illegal move";
  const int origins = countOrigins(board, text.substr(0, 1), target);
  const std::string name = NAMES[letter];
  if (origins > 1) return "ambiguous move, more than one " + name + " can go there";
  if (origins == 0) return "illegal move, no " + name + " can go there";
  return "illegal move, another " + name + " can go there";
}

}  // namespace ombrin
