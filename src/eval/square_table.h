// Tables of the evaluation, in centipawns unless a table says otherwise.
#pragma once

#include <array>
#include <cstdint>

#include "board/square.h"
#include "eval/phase_score.h"

namespace ombrin {

// A value for each square, as one side sees the board: eight values a row from file a to file h,
// the rows from that side's back rank to the rank its pawns promote on.
using SquareTable = std::array<std::int16_t, 64>;

// The same with both values of each square.
using PhaseSquareTable = std::array<PhaseScore, 64>;
consteval PhaseSquareTable join(const SquareTable& middlegame, const SquareTable& endgame) {
  PhaseSquareTable table;
  for (int index = 0; index < 64; ++index) table[index] = {middlegame[index], endgame[index]};
  return table;
}

// By relative rank, 0 being the own back rank.
using RankTable = std::array<std::int16_t, 8>;

// The place of a square in a SquareTable of that colour.
constexpr int tableIndex(Square square, Color color) {
  return (color == WHITE ? square : square.flipped()).index64();
}

// For the static_asserts beside the tables.
template <typename Value>
constexpr bool isFileSymmetric(const std::array<Value, 64>& table) {
  for (int index = 0; index < 64; ++index) {
    if (table[index] != table[index ^ 7]) return false;
  }
  return true;
}

}  // namespace ombrin
