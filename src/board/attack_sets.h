// Which squares a piece reaches.
#pragma once

#include <array>

#include "board/geometry.h"
#include "board/square_set.h"

namespace ombrin {

namespace attack_sets {

consteval SquareSet ray(int index, Delta step) {
  SquareSet set;
  for (Square square = Square::fromIndex64(index) + step; square.isOnBoard(); square += step) {
    set |= SquareSet::of(square.index64());
  }
  return set;
}

// A line through a square, without that square.
consteval SquareSet line(int index, Delta step) {
  return ray(index, step) | ray(index, -step);
}

// The two lines of a bishop or a rook, side by side to be fetched together.
struct LinePair {
  SquareSet first;
  SquareSet second;
};
consteval std::array<LinePair, 64> makePairs(Delta first, Delta second) {
  std::array<LinePair, 64> table;
  for (int index = 0; index < 64; ++index) table[index] = {line(index, first), line(index, second)};
  return table;
}
inline constexpr std::array<LinePair, 64> DIAGONALS = makePairs(UP + RIGHT, UP - RIGHT);
inline constexpr std::array<LinePair, 64> STRAIGHTS = makePairs(RIGHT, UP);

// By the file of a slider and the inner files that are occupied on its line: the files it reaches,
// up to and including the first occupied one each way. The same with ranks.
using ReachTable = std::array<std::array<SquareSet, 64>, 8>;
template <typename Lines>
consteval ReachTable makeReach(Lines line) {
  ReachTable table;
  for (int from = 0; from < 8; ++from) {
    for (int inner = 0; inner < 64; ++inner) {
      for (const int step : {-1, 1}) {
        for (int to = from + step; to >= 0 && to < 8; to += step) {
          table[from][inner] |= line(to);
          if ((2 * inner >> to & 1) != 0) break;
        }
      }
    }
  }
  return table;
}
inline constexpr ReachTable REACHED_FILES = makeReach([](int n) { return SquareSet::file(n); });
inline constexpr ReachTable REACHED_RANKS =
    makeReach([](int n) { return SquareSet::rank(n, WHITE); });

// What a slider reaches along a line (the "kindergarten bitboards" of the Chess Programming Wiki).
inline SquareSet alongFile(SquareSet line, unsigned index, SquareSet occupied) {
  return REACHED_RANKS[index / 8][(line & occupied).innerRanks(index % 8)] & line;
}
inline SquareSet alongOther(SquareSet line, unsigned index, SquareSet occupied) {
  return REACHED_FILES[index % 8][(line & occupied).innerFiles()] & line;
}

consteval std::array<SquareSet, 64> makeSteps(const std::array<Delta, 8>& steps) {
  std::array<SquareSet, 64> table;
  for (int index = 0; index < 64; ++index) {
    for (const Delta step : steps) {
      const Square to = Square::fromIndex64(index) + step;
      if (to.isOnBoard()) table[index] |= SquareSet::of(to.index64());
    }
  }
  return table;
}
inline constexpr std::array<SquareSet, 64> KNIGHT = makeSteps(KNIGHT_STEPS);
inline constexpr std::array<SquareSet, 64> KING = makeSteps(KING_STEPS);

}  // namespace attack_sets

// From the square with that number, 0 to 63.
inline SquareSet knightReach(unsigned index) {
  return attack_sets::KNIGHT[index];
}
inline SquareSet kingReach(unsigned index) {
  return attack_sets::KING[index];
}
// Up to and including the first occupied square in every direction.
inline SquareSet bishopReach(unsigned index, SquareSet occupied) {
  const auto& [diagonal, antidiagonal] = attack_sets::DIAGONALS[index];
  return attack_sets::alongOther(diagonal, index, occupied) |
         attack_sets::alongOther(antidiagonal, index, occupied);
}
inline SquareSet rookReach(unsigned index, SquareSet occupied) {
  const auto& [rank, file] = attack_sets::STRAIGHTS[index];
  return attack_sets::alongOther(rank, index, occupied) |
         attack_sets::alongFile(file, index, occupied);
}
inline SquareSet queenReach(unsigned index, SquareSet occupied) {
  return bishopReach(index, occupied) | rookReach(index, occupied);
}

}  // namespace ombrin
