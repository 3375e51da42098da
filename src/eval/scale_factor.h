#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// Of the scale factor, in 1/1024: a score that counts as it is, and a draw.
inline constexpr int FULL_SCALE = 1024;
inline constexpr int DRAWN = 0;

// How much of the score (`sum`, White minus Black) the material lets a side hope for, in 1/1024;
// DRAWN when it is a draw by material whatever the score. `entry` must be the position's.
int scaleFactor(const Board& board, const PawnEntry& entry, int sum);

}  // namespace ombrin
