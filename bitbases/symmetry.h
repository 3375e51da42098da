// Reflections of the board, of squares and of sets of squares.
#pragma once

#include "geometry.h"

namespace bitbases {

// First the squares' files or ranks or both are turned about, then the board is reflected in the
// diagonal a1-h8.
struct Symmetry {
  Square mask = 0;  // 7 turns the files about, 56 the ranks
  bool transposes = false;

  constexpr bool isNone() const { return mask == 0 && !transposes; }
  constexpr Square operator()(Square square) const {
    const Square turned = square ^ mask;
    return transposes ? (turned >> 3) | ((turned & 7) << 3) : turned;
  }
};

constexpr Squares filesTurned(Squares squares) {
  squares = (squares >> 1 & 0x5555555555555555) | (squares & 0x5555555555555555) << 1;
  squares = (squares >> 2 & 0x3333333333333333) | (squares & 0x3333333333333333) << 2;
  return (squares >> 4 & 0x0f0f0f0f0f0f0f0f) | (squares & 0x0f0f0f0f0f0f0f0f) << 4;
}

constexpr Squares ranksTurned(Squares squares) {
  return __builtin_bswap64(squares);
}

constexpr Squares transposed(Squares squares) {
  const auto exchange = [&squares](Squares mask, int distance) {
    const Squares difference = (squares ^ squares >> distance) & mask;
    squares ^= difference ^ difference << distance;
  };
  exchange(0x00aa00aa00aa00aa, 7);
  exchange(0x0000cccc0000cccc, 14);
  exchange(0x00000000f0f0f0f0, 28);
  return squares;
}

// The squares that the symmetry brings onto the squares given.
constexpr Squares undone(Symmetry symmetry, Squares squares) {
  if (symmetry.transposes) squares = transposed(squares);
  if ((symmetry.mask & 7) != 0) squares = filesTurned(squares);
  return (symmetry.mask & 56) != 0 ? ranksTurned(squares) : squares;
}

constexpr Squares applied(Symmetry symmetry, Squares squares) {
  if ((symmetry.mask & 7) != 0) squares = filesTurned(squares);
  if ((symmetry.mask & 56) != 0) squares = ranksTurned(squares);
  return symmetry.transposes ? transposed(squares) : squares;
}

// The squares one king's step from any of a set's.
constexpr Squares spread(Squares squares) {
  constexpr Squares NOT_A = 0xfefefefefefefefe;
  constexpr Squares NOT_H = 0x7f7f7f7f7f7f7f7f;
  const Squares sides = (squares << 1 & NOT_A) | (squares >> 1 & NOT_H);
  const Squares row = squares | sides;
  return sides | row << 8 | row >> 8;
}

}  // namespace bitbases
