#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ombrin {

// How a game ended. The order is that of PGN_RESULT_TEXTS, and the one in which texts are tried.
enum PgnResult : int { NO_RESULT = 0, DRAWN = 1, WHITE_WON = 2, BLACK_WON = 3 };

inline constexpr std::array<std::string_view, 4> PGN_RESULT_TEXTS = {"*", "1/2-1/2", "1-0", "0-1"};

// The texts of a game's moves, one behind the other in one buffer that is kept from game to game.
// What would make it larger than any game is dropped: a file without tags is one game to its end.
class MoveTexts {
 public:
  static constexpr std::size_t MAX_BYTES = 1 << 24;

  std::size_t size() const { return ends_.size(); }
  bool empty() const { return ends_.empty(); }
  // Valid until the next change.
  std::string_view operator[](std::size_t index) const {
    const std::size_t start = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(text_).substr(start, ends_[index] - start);
  }
  void add(std::string_view text) {
    if (!fits(text)) return;
    text_ += text;
    ends_.push_back(text_.size());
  }
  // Does nothing when there is no last text.
  void appendToLast(std::string_view more) {
    if (ends_.empty() || !fits(more)) return;
    text_ += more;
    ends_.back() = text_.size();
  }
  void clear() {
    text_.clear();
    ends_.clear();
  }

 private:
  bool fits(std::string_view more) const { return text_.size() + more.size() <= MAX_BYTES; }

  std::string text_;
  std::vector<std::size_t> ends_;
};

// One game as its text tells it: tags that matter to a book, and the move texts in order, which
// nobody has checked. What is missing is empty or 0.
struct PgnGame {
  std::string fen;
  std::string white;
  std::string black;
  std::string date;  // of the tags Date and EventDate, the later line
  std::string event;
  std::string site;
  std::string round;
  std::string eco;
  std::string variant;
  std::string warning;  // what is wrong with the result, or with a comment that has no end
  int whiteElo = 0;
  int blackElo = 0;
  int result = NO_RESULT;  // a PgnResult
  MoveTexts moves;

  // As new, but the buffers stay.
  void clear();
};

}  // namespace ombrin
