// How the pieces bear on an enemy king, by the squares of both.
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>

#include "board/geometry.h"
#include "board/piece.h"
#include "board/square.h"
#include "board/square_set.h"
#include "eval/king_piece_table.h"

namespace ombrin {

// What a slider has to do with a king: it bears on the king's surroundings from where it stands
// (the path is empty), or it looks towards them and would after a walk, or neither.
struct Approach {
  SquareSet path;          // the squares it walks over and the one where it ends
  std::uint8_t end = 0;    // the latter
  std::uint8_t worth = 0;  // of where it bears on the surroundings with no man on the path; 0 for
                           // neither
};

namespace king_attack_tables {

constexpr int sign(int value) {
  return (value > 0) - (value < 0);
}
constexpr int magnitude(int value) {
  return value < 0 ? -value : value;
}

constexpr std::uint8_t knight(int ranks, int files) {
  // Rows by rank difference, 0 to 5; columns by file difference, -3 to 3.
  constexpr std::array<std::array<std::uint8_t, 7>, 6> ROWS = {{{2, 6, 8, 0, 8, 6, 2},
                                                                {2, 8, 8, 8, 8, 8, 2},
                                                                {2, 8, 8, 8, 8, 8, 2},
                                                                {4, 4, 6, 8, 6, 4, 4},
                                                                {4, 4, 4, 4, 4, 4, 4},
                                                                {0, 0, 4, 0, 4, 0, 0}}};
  const int row = magnitude(ranks);
  return row > 5 || magnitude(files) > 3 ? std::uint8_t{0} : ROWS[row][files + 3];
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

constexpr Approach approach(PieceType type, Square king, Square square) {
  int ranks = king.rank() - square.rank();
  int files = king.file() - square.file();
  const int step = stepOf(type, ranks, files);
  const bool leadsToKing = stepAlong(king - square) == step;
  Approach result{};
  int worth = directOf(type, ranks, files);
  if (worth == 0 && step != 0) {
    // No step leads away from the king, so that the walk stays between the two and on the board.
    while (worth == 0) {
      square += step;
      if (!square.isOnBoard()) std::abort();
      result.path |= SquareSet::of(square.index64());
      worth = directOf(type, king.rank() - square.rank(), king.file() - square.file());
    }
    result.end = static_cast<std::uint8_t>(square.index64());
    if (leadsToKing) worth += 4;
    if (type != ROOK) worth += type == BISHOP ? 4 : 2;  // for a free end
  }
  result.worth = static_cast<std::uint8_t>(worth);
  return result;
}

template <PieceType TYPE>
inline constexpr auto APPROACHES = makeKingPieceTable<Approach>([](Square king, Square square) {
  return approach(TYPE, king, square);
});

}  // namespace king_attack_tables

inline constexpr auto KNIGHT_BEARING =
    makeKingPieceTable<std::uint8_t>([](Square king, Square square) {
      return king_attack_tables::knight(king.rank() - square.rank(), king.file() - square.file());
    });

// What the sliders of that type have to do with a king, by their squares.
template <PieceType TYPE>
constexpr const std::array<Approach, 64>& approachesTo(unsigned king) {
  static_assert(TYPE == BISHOP || TYPE == ROOK || TYPE == QUEEN);
  return king_attack_tables::APPROACHES<TYPE>[king];
}

}  // namespace ombrin
