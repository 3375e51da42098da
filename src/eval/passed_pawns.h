#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// What the passed pawns of one colour are worth beyond their squares, by what stands in front of
// and behind them and where the kings are; in centipawns, positive being good for that colour.
// `entry` must be the position's. The board comes back as it was.
int passedPawns(Board& board, const PawnEntry& entry, Color color);

}  // namespace ombrin
