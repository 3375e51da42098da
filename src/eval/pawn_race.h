#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// Where a side has no pieces left: the bonus for the side whose passed pawn queens unstoppably, or
// first, White minus Black; 350 to 475 centipawns or nothing. `entry` must be the position's.
int pawnevaluator(const Board& board, const PawnEntry& entry);

}  // namespace ombrin
