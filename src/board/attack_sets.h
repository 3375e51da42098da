// Which squares a piece reaches.
#pragma once

#include <array>

#include "board/geometry.h"
#include "board/piece.h"
#include "board/square_set.h"

namespace ombrin {

namespace attack_sets {

// A line through a square: the squares on its two sides, in the order of their bits.
struct Line {
  SquareSet before;
  SquareSet after;
};

// The two lines that go through a square with that step and the next.
using LinePair = std::array<Line, 2>;
using LineTable = std::array<LinePair, 64>;

consteval SquareSet ray(Square square, Delta step) {
  SquareSet set;
  for (square += step; square.isOnBoard(); square += step) set |= SquareSet::of(square.index64());
  return set;
}

consteval LineTable makeLines(Delta first, Delta second) {
  LineTable table;
  for (int index = 0; index < 64; ++index) {
    const Square square = Square::at(index % 8, index / 8);
    table[index] = {Line{ray(square, -first), ray(square, first)},
                    Line{ray(square, -second), ray(square, second)}};
  }
  return table;
}
inline constexpr LineTable DIAGONALS = makeLines(UP - RIGHT, UP + RIGHT);
inline constexpr LineTable STRAIGHTS = makeLines(RIGHT, UP);

consteval std::array<SquareSet, 64> makeSteps(const std::array<Delta, 8>& steps) {
  std::array<SquareSet, 64> table;
  for (int index = 0; index < 64; ++index) {
    for (const Delta step : steps) {
      const Square to = Square::at(index % 8, index / 8) + step;
      if (to.isOnBoard()) table[index] |= SquareSet::of(to.index64());
    }
  }
  return table;
}
inline constexpr std::array<SquareSet, 64> KNIGHT = makeSteps(KNIGHT_STEPS);
inline constexpr std::array<SquareSet, 64> KING = makeSteps(KING_STEPS);

inline SquareSet alongLines(const LinePair& lines, SquareSet occupied) {
  return SquareSet::reach(lines[0].before, lines[0].after, occupied) |
         SquareSet::reach(lines[1].before, lines[1].after, occupied);
}

}  // namespace attack_sets

inline SquareSet knightReach(Square square) {
  return attack_sets::KNIGHT[square.index64()];
}
inline SquareSet kingReach(Square square) {
  return attack_sets::KING[square.index64()];
}
// Up to and including the first occupied square in every direction.
inline SquareSet bishopReach(Square square, SquareSet occupied) {
  return attack_sets::alongLines(attack_sets::DIAGONALS[square.index64()], occupied);
}
inline SquareSet rookReach(Square square, SquareSet occupied) {
  return attack_sets::alongLines(attack_sets::STRAIGHTS[square.index64()], occupied);
}
inline SquareSet queenReach(Square square, SquareSet occupied) {
  return bishopReach(square, occupied) | rookReach(square, occupied);
}

}  // namespace ombrin
