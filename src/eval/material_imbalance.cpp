#include "eval/material_imbalance.h"

#include <algorithm>
#include <array>

namespace ombrin {

namespace {

// By the number of own pawns.
using PawnCountTable = std::array<int, 9>;
constexpr PawnCountTable ROOK_BY_PAWNS = {0, 0, 0, 0, 0, -5, -10, -15, -20};
constexpr PawnCountTable BISHOP_BY_PAWNS = {24, 22, 20, 18, 17, 16, 15, 14, 12};
constexpr PawnCountTable KNIGHT_BY_PAWNS = {5, 7, 9, 10, 11, 12, 15, 15, 15};

// By majors(): how much heavy material there is besides.
using MajorsTable = std::array<int, 8>;
constexpr MajorsTable BISHOPS_VS_BISHOP = {35, 43, 47, 31, 31, 39};
constexpr MajorsTable BISHOPS_WITH_KNIGHT_VS_BISHOP = {35, 47, 52, 35, 40, 45};
constexpr MajorsTable BISHOPS_WITH_KNIGHT = {-8, -3, 6, -8, 4, 12};
constexpr MajorsTable BISHOP_PAIR = {25, 47, 56, 33, 40, 62};
constexpr MajorsTable LONE_BISHOP = {-21, -7, -10, -19, -6, -2};
constexpr MajorsTable TWO_MINORS = {7, 62, 0, 51, 68, 0};
constexpr MajorsTable MINOR_KNIGHT = {0, 32, -2, 0, -3, -21};
constexpr MajorsTable MINOR_BISHOP = {0, 41, -4, 0, 17, -16};
constexpr MajorsTable MINOR_VS_PAWNS_KNIGHT = {0, 46, 7, 0, 37, 18};
constexpr MajorsTable MINOR_VS_PAWNS_BISHOP = {0, 62, -4, 0, 45, 20};
constexpr MajorsTable EXTRA_MINOR_BISHOP = {69, 47, 39, 67, 39, 55};
constexpr MajorsTable EXTRA_MINOR_KNIGHT = {42, 34, 19, 40, 42, 42};

// Of the side with the queen, by its rooks, pawns and minor pieces.
constexpr std::array<int, 8> QUEEN_VS_ROOK_BY_ROOKS = {2, -40};
constexpr PawnCountTable QUEEN_VS_ROOK_BY_PAWNS = {-50, -20, 5, 15, 20, 0, -20, 0, 0};
constexpr std::array<int, 8> QUEEN_VS_TWO_ROOKS = {0, 8, 10, 10, 10};
constexpr int THREE_MINORS_FOR_QUEEN = 92;

// Of the side that is ahead, in 1/1024.
constexpr PawnCountTable IMBALANCE_BY_PAWNS = {700, 1100, 1200, 1250, 1200, 1150, 1100, 1050, 975};

int majors(Material side) {
  return std::min(side.rooks() + 3 * side.queens(), 7);
}

int byPawns(Material side) {
  const int pawns = side.pawns();
  return side.rooks() * ROOK_BY_PAWNS[pawns] + side.bishops() * BISHOP_BY_PAWNS[pawns] +
         side.knights() * KNIGHT_BY_PAWNS[pawns];
}

// The side with more bishops, heavy pieces being equal.
int moreBishops(Material more, Material fewer) {
  const int m = majors(more);
  if (more.knights() > 0) {
    return fewer.bishops() > 0 ? BISHOPS_WITH_KNIGHT_VS_BISHOP[m] : BISHOPS_WITH_KNIGHT[m];
  }
  if (fewer.bishops() > 0) return BISHOPS_VS_BISHOP[m];
  return more.bishops() > 1 ? BISHOP_PAIR[m] : LONE_BISHOP[m];
}

// The side with more minor pieces, heavy pieces being equal.
int moreMinors(Material more, Material fewer) {
  const int m = majors(more);
  return more.bishops() > fewer.bishops() ? EXTRA_MINOR_BISHOP[m] : EXTRA_MINOR_KNIGHT[m];
}

// The side with a queen against the one without.
int queenAgainstNone(Material with, Material without) {
  switch (without.rooks() - with.rooks()) {
    case 0:
      return without.minors() >= with.minors() + 3 ? -THREE_MINORS_FOR_QUEEN : 0;
    case 1:
      return QUEEN_VS_ROOK_BY_ROOKS[std::min(with.rooks(), 7)] +
             QUEEN_VS_ROOK_BY_PAWNS[with.pawns()];
    case 2:
      return QUEEN_VS_TWO_ROOKS[std::min(with.minors(), 7)];
    default:
      return 0;
  }
}

// The side with more minor pieces, heavy pieces differing (typically a rook against them).
int minorsAgainstMajors(Material more, Material fewer) {
  const int surplus = more.minors() - fewer.minors();
  if (surplus == 2) return TWO_MINORS[majors(more)];
  if (surplus != 1) return 0;
  const int m = majors(fewer);
  const bool knightsDiffer = more.knights() != fewer.knights();
  if (fewer.pawns() + 1 < more.pawns()) {
    return knightsDiffer ? -MINOR_VS_PAWNS_KNIGHT[m] : -MINOR_VS_PAWNS_BISHOP[m];
  }
  return knightsDiffer ? -MINOR_KNIGHT[m] : -MINOR_BISHOP[m];
}

int minorTrade(Material white, Material black) {
  const int white2black = white.minors() - black.minors();
  if (white2black == 0) return 0;
  return white2black > 0 ? moreMinors(white, black) : -moreMinors(black, white);
}

int majorTrade(Material white, Material black) {
  if (white.hasQueen() != black.hasQueen()) {
    return white.hasQueen() ? queenAgainstNone(white, black) : -queenAgainstNone(black, white);
  }
  return white.minors() > black.minors() ? minorsAgainstMajors(white, black)
                                         : -minorsAgainstMajors(black, white);
}

// The side that is ahead makes more of an imbalance with pawns on the board and less material.
int scaled(int value, Material white, Material black) {
  if (white.total() == black.total()) return value;
  const Material ahead = white.total() > black.total() ? white : black;
  value = value * IMBALANCE_BY_PAWNS[ahead.pawns()] / 1024;
  return value * (1024 + 6 * (16 - ahead.units())) / 1024;
}

}  // namespace

int materialImbalance(Material white, Material black) {
  if (white == black) return 0;
  int value = byPawns(white) - byPawns(black);

  const int bishopSurplus = white.bishops() - black.bishops();
  if (white.sameMajors(black)) {
    if (bishopSurplus > 0) value += moreBishops(white, black);
    if (bishopSurplus < 0) value -= moreBishops(black, white);
    value += minorTrade(white, black);
  } else {
    // A pair counts for White first, even against more bishops.
    if (bishopSurplus != 0) {
      if (white.bishops() >= 2) {
        value += BISHOPS_VS_BISHOP[majors(black)];
      } else if (black.bishops() >= 2) {
        value -= BISHOPS_VS_BISHOP[majors(white)];
      }
    }
    value += majorTrade(white, black);
  }
  return scaled(value, white, black);
}

}  // namespace ombrin
