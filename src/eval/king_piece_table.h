#pragma once

#include <array>

#include "board/square.h"

namespace ombrin {

// By the squares (0 to 63) of a king and of an enemy piece.
template <typename Value>
using KingPieceTable = std::array<std::array<Value, 64>, 64>;

// Asks value(king, piece) for all pairs of squares.
template <typename Value, typename Function>
consteval KingPieceTable<Value> makeKingPieceTable(Function value) {
  KingPieceTable<Value> table{};
  for (int king = 0; king < 64; ++king) {
    for (int piece = 0; piece < 64; ++piece) {
      table[king][piece] = value(Square::fromIndex64(king), Square::fromIndex64(piece));
    }
  }
  return table;
}

}  // namespace ombrin
