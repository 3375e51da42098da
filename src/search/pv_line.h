#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "board/move.h"

namespace ombrin {

// A line of moves that ends at the first null move.
class PvLine {
 public:
  static constexpr int CAPACITY = 128;  // its end included

  Move operator[](int index) const { return moves_[index]; }
  void clear() { moves_[0] = NULL_MOVE; }
  void set(Move move) {
    moves_[0] = move;
    moves_[1] = NULL_MOVE;
  }
  // `move` followed by another line, as far as there is room.
  void set(Move move, const PvLine& rest) {
    moves_[0] = move;
    int length = 1;
    for (; length < CAPACITY - 1 && rest.moves_[length - 1]; ++length) {
      moves_[length] = rest.moves_[length - 1];
    }
    moves_[length] = NULL_MOVE;
  }
  // At most CAPACITY - 1 moves.
  void set(std::span<const Move> moves) {
    *std::copy(moves.begin(), moves.end(), moves_.begin()) = NULL_MOVE;
  }
  std::span<const Move> moves() const {
    return {moves_.begin(), std::find(moves_.begin(), moves_.end(), NULL_MOVE)};
  }

 private:
  std::array<Move, CAPACITY> moves_{};
};

}  // namespace ombrin
