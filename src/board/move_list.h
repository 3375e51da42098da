#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "board/move.h"

namespace ombrin {

// Moves of one position, in the order in which they were generated. Has room for those of any
// position and never allocates.
class MoveList {
 public:
  const Move* begin() const { return moves_.data(); }
  const Move* end() const { return moves_.data() + size_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  Move operator[](std::size_t index) const { return moves_[index]; }
  // Is the move among them? Flags do not matter.
  bool contains(Move move) const {
    return std::any_of(begin(), end(), [move](Move other) { return other.isSameAs(move); });
  }

  // Has generate(out) write moves behind the last one and return where they end.
  template <typename Generator>
  void append(Generator&& generate) {
    endAt(generate(moves_.data() + size_));
  }
  // Drops the moves for which drop(move) is true; the others keep their order.
  template <typename Predicate>
  void removeIf(Predicate&& drop) {
    endAt(std::remove_if(moves_.data(), moves_.data() + size_, drop));
  }

 private:
  void endAt(const Move* end) { size_ = static_cast<std::size_t>(end - moves_.data()); }

  std::array<Move, MAX_MOVES> moves_;
  std::size_t size_ = 0;
};

}  // namespace ombrin
