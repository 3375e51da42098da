// Where men go on a board of at most five, as sets of squares: bit s is square s.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "position.h"

namespace bitbases {

using Squares = std::uint64_t;

constexpr Squares bitOf(Square square) {
  return Squares{1} << square;
}

// Takes the lowest square out of a set that is not empty.
constexpr Square popSquare(Squares& squares) {
  const Square square = std::countr_zero(squares);
  squares &= squares - 1;
  return square;
}

namespace geometry_tables {

struct Step {
  int file;
  int rank;
};

constexpr Square target(Square from, Step step, int times = 1) {
  const int file = fileOf(from) + times * step.file;
  const int rank = rankOf(from) + times * step.rank;
  return file < 0 || file > 7 || rank < 0 || rank > 7 ? -1 : file + 8 * rank;
}

// The directions in which square numbers grow come first.
inline constexpr std::array<Step, 8> DIRECTIONS = {
    {{0, 1}, {1, 0}, {1, 1}, {-1, 1}, {0, -1}, {-1, 0}, {-1, -1}, {1, -1}}};
inline constexpr std::array<Step, 8> JUMPS = {
    {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}}};

template <std::size_t N>
consteval std::array<Squares, 64> makeSteps(const std::array<Step, N>& steps) {
  std::array<Squares, 64> table{};
  for (Square from = 0; from < 64; ++from) {
    for (const Step step : steps) {
      if (target(from, step) >= 0) table[from] |= bitOf(target(from, step));
    }
  }
  return table;
}

consteval std::array<std::array<Squares, 64>, 8> makeRays() {
  std::array<std::array<Squares, 64>, 8> rays{};
  for (int direction = 0; direction < 8; ++direction) {
    for (Square from = 0; from < 64; ++from) {
      for (int n = 1; target(from, DIRECTIONS[direction], n) >= 0; ++n) {
        rays[direction][from] |= bitOf(target(from, DIRECTIONS[direction], n));
      }
    }
  }
  return rays;
}

consteval std::array<std::array<Squares, 64>, 64> makeBetween() {
  std::array<std::array<Squares, 64>, 64> between{};
  for (const Step direction : DIRECTIONS) {
    for (Square from = 0; from < 64; ++from) {
      Squares passed = 0;
      for (int n = 1; target(from, direction, n) >= 0; ++n) {
        const Square to = target(from, direction, n);
        between[from][to] = passed;
        passed |= bitOf(to);
      }
    }
  }
  return between;
}

inline constexpr std::array<Squares, 64> KING = makeSteps(DIRECTIONS);
inline constexpr std::array<Squares, 64> KNIGHT = makeSteps(JUMPS);
inline constexpr std::array<std::array<Squares, 64>, 2> PAWN = {
    {makeSteps(std::array<Step, 2>{{{-1, 1}, {1, 1}}}),
     makeSteps(std::array<Step, 2>{{{-1, -1}, {1, -1}}})}};
inline constexpr std::array<std::array<Squares, 64>, 8> RAYS = makeRays();
inline constexpr std::array<std::array<Squares, 64>, 64> BETWEEN = makeBetween();

template <int DIRECTION>
constexpr Squares slide(Square from, Squares occupied) {
  const Squares ray = RAYS[DIRECTION][from];
  const Squares blockers = ray & occupied;
  if (blockers == 0) return ray;
  const Square first = DIRECTION < 4 ? std::countr_zero(blockers) : 63 - std::countl_zero(blockers);
  return ray ^ RAYS[DIRECTION][first];
}

}  // namespace geometry_tables

constexpr Squares kingSteps(Square from) {
  return geometry_tables::KING[from];
}

constexpr Squares pawnAttacks(Color color, Square from) {
  return geometry_tables::PAWN[color][from];
}

// What a man attacks: the first man that a slider meets included, whatever its colour.
constexpr Squares attacks(const Man& man, Squares occupied) {
  using geometry_tables::slide;
  const Square from = man.square;
  Squares squares = 0;
  switch (man.type) {
    case PAWN:
      return pawnAttacks(man.color, from);
    case KNIGHT:
      return geometry_tables::KNIGHT[from];
    case QUEEN:
    case ROOK:
      squares = slide<0>(from, occupied) | slide<1>(from, occupied) | slide<4>(from, occupied) |
                slide<5>(from, occupied);
      if (man.type == ROOK) return squares;
      [[fallthrough]];
    case BISHOP:
      return squares | slide<2>(from, occupied) | slide<3>(from, occupied) |
             slide<6>(from, occupied) | slide<7>(from, occupied);
  }
  return 0;
}

// Would it attack the square if nothing stood in between?
constexpr bool isAimedAt(const Man& man, Square target) {
  const int files = fileOf(target) - fileOf(man.square);
  const int ranks = rankOf(target) - rankOf(man.square);
  const bool isStraight = files == 0 || ranks == 0;
  const bool isDiagonal = files == ranks || files == -ranks;
  switch (man.type) {
    case QUEEN:
      return isStraight || isDiagonal;
    case ROOK:
      return isStraight;
    case BISHOP:
      return isDiagonal;
    case KNIGHT:
      return files * files + ranks * ranks == 5;
    case PAWN:
      return (files == 1 || files == -1) && ranks == (man.color == 0 ? 1 : -1);
  }
  return false;
}

constexpr bool isAttacking(const Man& man, Square target, Squares occupied) {
  return isAimedAt(man, target) && (geometry_tables::BETWEEN[man.square][target] & occupied) == 0;
}

}  // namespace bitbases
