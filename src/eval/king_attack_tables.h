// How the pieces bear on an enemy king, by the difference king - piece.
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>

#include "board/geometry.h"
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

// What a slider has to do with a king: it bears on the king's surroundings from where it stands
// (worth is not 0 and steps is 0), or it looks towards them and would after so many steps, or
// neither.
struct Approach {
  std::int8_t step;
  std::uint8_t steps;
  std::int8_t worth;  // of the square where it bears on the surroundings, obstacles aside
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

// What a slider bears on, standing that far from the king; 0 when it is too far away.
constexpr int directOf(PieceType type, int ranks, int files) {
  const int a = magnitude(ranks);
  const int b = magnitude(files);
  if (a + b == 0) return 0;
  if (type == BISHOP) return a + b <= 2 ? 8 : 0;
  if (type == ROOK) return a <= 1 && b <= 1 ? 8 : a == 2 && b == 2 ? 6 : 0;
  return a <= 2 && b <= 2 ? 8 : 0;
}

// The step by which it would come closest to the king; 0 for none.
constexpr int stepOf(PieceType type, int ranks, int files) {
  const int a = magnitude(ranks);
  const int b = magnitude(files);
  const int alongFile = UP * sign(ranks);
  const int alongRank = RIGHT * sign(files);
  const int diagonal = alongFile + alongRank;
  if (type == BISHOP) return a >= 2 && b >= a - 2 && b <= a + 1 && b >= 1 ? diagonal : 0;
  if (type == ROOK) {
    if (a <= 1) return b >= 2 ? alongRank : 0;
    if (a == 2) return b <= 1 ? alongFile : b >= 3 ? alongRank : 0;
    return b <= 2 ? alongFile : 0;
  }
  if (a <= 1) return b >= 3 ? alongRank : 0;
  if (a == 2) return b == 3 ? diagonal : 0;
  if (b <= 1) return alongFile;
  return b >= a - 2 && b <= a + 1 ? diagonal : 0;
}

constexpr Approach approach(PieceType type, int ranks, int files) {
  int worth = directOf(type, ranks, files);
  const int step = worth != 0 ? 0 : stepOf(type, ranks, files);
  if (step == 0) return {0, 0, static_cast<std::int8_t>(worth)};
  // No step leads away from the king, so that the walk stays between the two and on the board.
  const int rankStep = magnitude(step) == 1 ? 0 : sign(ranks);
  const int fileStep = magnitude(step) == UP ? 0 : sign(files);
  int steps = 0;
  while (worth == 0) {
    if ((rankStep != 0 && ranks == 0) || (fileStep != 0 && files == 0)) std::abort();
    ranks -= rankStep;
    files -= fileStep;
    ++steps;
    worth = directOf(type, ranks, files);
  }
  // The way goes straight on to the king.
  if (stepAlong(UP * ranks + RIGHT * files) == step) worth += 4;
  return {static_cast<std::int8_t>(step), static_cast<std::uint8_t>(steps),
          static_cast<std::int8_t>(worth)};
}

template <PieceType TYPE>
inline constexpr auto APPROACH = DeltaTable<Approach>::make([](int ranks, int files) {
  return approach(TYPE, ranks, files);
});

}  // namespace king_attack_tables

inline constexpr auto KNIGHT_BEARING = DeltaTable<std::int8_t>::make(king_attack_tables::knight);

template <PieceType TYPE>
constexpr const Approach& approachOf(Delta difference) {
  static_assert(TYPE == BISHOP || TYPE == ROOK || TYPE == QUEEN);
  return king_attack_tables::APPROACH<TYPE>.at(difference);
}

}  // namespace ombrin
