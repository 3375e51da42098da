// How the pieces bear on an enemy king, by the difference king - piece.
#pragma once

#include <array>
#include <cstdint>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin {

template <typename Value>
class DeltaTable {
 public:
  // Asks value(ranks, files) for every difference between two squares of a board.
  template <typename Function>
  static consteval DeltaTable make(Function value) {
    DeltaTable table;
    for (int ranks = -7; ranks <= 7; ++ranks) {
      for (int files = -7; files <= 7; ++files) {
        table.values_[MIDDLE + ranks * UP + files * RIGHT] = value(ranks, files);
      }
    }
    return table;
  }
  constexpr const Value& at(Delta difference) const { return values_[MIDDLE + difference]; }

 private:
  static constexpr int MIDDLE = 120;
  std::array<Value, 240> values_{};
};

// A slider either bears on the king's surroundings from where it stands (direct is not 0) or, if
// step is not 0, looks towards them that way.
struct Approach {
  std::int8_t direct;
  std::int8_t step;
};

namespace king_attack_tables {

constexpr int sign(int value) {
  return (value > 0) - (value < 0);
}
constexpr int magnitude(int value) {
  return value < 0 ? -value : value;
}

consteval std::int8_t knight(int ranks, int files) {
  // Rows by rank difference, 0 to 5; columns by file difference, -3 to 3.
  constexpr std::array<std::array<std::int8_t, 7>, 6> ROWS = {{{2, 6, 8, 0, 8, 6, 2},
                                                               {2, 8, 8, 8, 8, 8, 2},
                                                               {2, 8, 8, 8, 8, 8, 2},
                                                               {4, 4, 6, 8, 6, 4, 4},
                                                               {4, 4, 4, 4, 4, 4, 4},
                                                               {0, 0, 4, 0, 4, 0, 0}}};
  const int row = magnitude(ranks);
  return row > 5 || magnitude(files) > 3 ? std::int8_t{0} : ROWS[row][files + 3];
}

consteval Approach approach(int direct, int step) {
  return {static_cast<std::int8_t>(direct), static_cast<std::int8_t>(direct != 0 ? 0 : step)};
}

consteval Approach bishop(int ranks, int files) {
  const int a = magnitude(ranks);
  const int b = magnitude(files);
  const bool near = a + b >= 1 && a + b <= 2;
  const bool looks = a >= 2 && b >= a - 2 && b <= a + 1 && b >= 1;
  return approach(near ? 8 : 0, looks ? UP * sign(ranks) + RIGHT * sign(files) : 0);
}

consteval Approach rook(int ranks, int files) {
  const int a = magnitude(ranks);
  const int b = magnitude(files);
  if (a <= 1 && b <= 1) return approach(a + b > 0 ? 8 : 0, 0);
  if (a == 2 && b == 2) return approach(6, 0);
  const bool alongRank = a <= 1 || (a == 2 && b >= 3);
  if (alongRank) return approach(0, RIGHT * sign(files));
  return approach(0, b <= 2 ? UP * sign(ranks) : 0);
}

consteval Approach queen(int ranks, int files) {
  const int a = magnitude(ranks);
  const int b = magnitude(files);
  if (a <= 2 && b <= 2) return approach(a + b > 0 ? 8 : 0, 0);
  const int diagonal = UP * sign(ranks) + RIGHT * sign(files);
  if (a <= 1) return approach(0, RIGHT * sign(files));
  if (a == 2) return approach(0, b == 3 ? diagonal : 0);
  if (b <= 1) return approach(0, UP * sign(ranks));
  return approach(0, b >= a - 2 && b <= a + 1 ? diagonal : 0);
}

}  // namespace king_attack_tables

inline constexpr auto KNIGHT_BEARING = DeltaTable<std::int8_t>::make(king_attack_tables::knight);
inline constexpr auto BISHOP_APPROACH = DeltaTable<Approach>::make(king_attack_tables::bishop);
inline constexpr auto ROOK_APPROACH = DeltaTable<Approach>::make(king_attack_tables::rook);
inline constexpr auto QUEEN_APPROACH = DeltaTable<Approach>::make(king_attack_tables::queen);

template <PieceType TYPE>
constexpr const Approach& approachOf(Delta difference) {
  static_assert(TYPE == BISHOP || TYPE == ROOK || TYPE == QUEEN);
  if constexpr (TYPE == BISHOP) return BISHOP_APPROACH.at(difference);
  if constexpr (TYPE == ROOK) return ROOK_APPROACH.at(difference);
  if constexpr (TYPE == QUEEN) return QUEEN_APPROACH.at(difference);
}

}  // namespace ombrin
