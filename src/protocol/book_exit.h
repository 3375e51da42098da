#pragma once

#include <cstdint>
#include <optional>

#include "board/board.h"

namespace ombrin {

inline constexpr char OUT_OF_BOOK[] = "out of book=%i\n";

// Remembers where the game left the opening book: the book is not asked again in that game, and the
// clock gives the first moves on one's own more time. Plies are the game's (Board::gamePly).
class BookExit {
 public:
  bool known() const { return firstOutOfBookPly_ != 0; }
  // Counted from 1; 0 while the game is in book.
  std::uint32_t firstOutOfBookPly() const { return firstOutOfBookPly_; }
  // The position that was first searched.
  std::uint64_t outOfBookHash() const { return outOfBookHash_; }

  // The position is the first one that the engine has to search by itself.
  void record(const Board& board) {
    firstOutOfBookPly_ = board.gamePly() + 1;
    outOfBookHash_ = board.hash;
  }

  // A new game.
  void reset() { *this = BookExit(); }

  // The engine's own moves since then, this one included; nothing while in book, or when the game
  // was taken back to before that point.
  std::optional<int> movesOutOfBook(const Board& board) const {
    if (!known() || board.gamePly() + 1 < firstOutOfBookPly_) return std::nullopt;
    return static_cast<int>((board.gamePly() + 1 - firstOutOfBookPly_) / 2 + 1);
  }

 private:
  std::uint32_t firstOutOfBookPly_ = 0;
  std::uint64_t outOfBookHash_ = 0;
};

}  // namespace ombrin
