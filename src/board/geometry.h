// What the differences of squares mean, as tables.
#pragma once

#include <array>
#include <cstdint>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin {

inline constexpr std::array<Delta, 4> DIAGONAL_STEPS = {17, 15, -17, -15};
inline constexpr std::array<Delta, 4> STRAIGHT_STEPS = {1, 16, -1, -16};
inline constexpr std::array<Delta, 8> KNIGHT_STEPS = {-33, -31, -18, -14, 14, 18, 31, 33};
inline constexpr std::array<Delta, 8> KING_STEPS = {1, 17, 16, 15, -1, -17, -16, -15};

namespace geometry_tables {

struct Entry {
  std::int8_t step;
  std::uint8_t attacks;
};

consteval std::array<Entry, 256> make() {
  std::array<Entry, 256> table{};
  const auto addLines = [&table](const std::array<Delta, 4>& steps, int attacks) {
    for (const Delta step : steps) {
      for (int n = 1; n <= 7; ++n) {
        table[128 + n * step] = {static_cast<std::int8_t>(step),
                                 static_cast<std::uint8_t>(attacks)};
      }
    }
  };
  addLines(DIAGONAL_STEPS, DIAGONAL_ATTACK);
  addLines(STRAIGHT_STEPS, STRAIGHT_ATTACK);
  for (const Delta step : KNIGHT_STEPS) {
    table[128 + step] = {static_cast<std::int8_t>(step), KNIGHT_ATTACK};
  }
  for (const Delta step : KING_STEPS) table[128 + step].attacks |= KING_ATTACK;
  for (const Delta side : {-RIGHT, RIGHT}) {
    table[128 + UP + side].attacks |= WHITE_PAWN_ATTACK;
    table[128 - UP + side].attacks |= BLACK_PAWN_ATTACK;
  }
  return table;
}
inline constexpr std::array<Entry, 256> TABLE = make();

}  // namespace geometry_tables

// The step that leads over `difference` (target - origin, within ±119) along a rank, file or
// diagonal; for a knight's jump the difference itself; 0 when nothing connects the two squares.
constexpr Delta stepAlong(Delta difference) {
  return geometry_tables::TABLE[128 + difference].step;
}

// The attack bits of the pieces that reach over `difference` (target - origin) on an empty board;
// no colour bits, so an AND with a piece's kind leaves the ways in which it reaches.
constexpr int attacksOver(Delta difference) {
  return geometry_tables::TABLE[128 + difference].attacks;
}

// Is the difference one that a piece of that kind slides over (or a single step of its lines)?
constexpr bool slidesOver(int kind, Delta difference) {
  return (kind & attacksOver(difference) & LINE_ATTACK) != 0;
}

// Do the two squares share a rank, file or diagonal?
constexpr bool isLine(Delta difference) {
  return (attacksOver(difference) & LINE_ATTACK) != 0;
}

static_assert(attacksOver(17) == 21 && attacksOver(-17) == 22 && attacksOver(16) == 36);
static_assert(stepAlong(-7 * 15) == -15 && stepAlong(33) == 33 && stepAlong(32) == 16);

}  // namespace ombrin
