#pragma once

#include "board/board.h"
#include "eval/board_sets.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// Placement, mobility and threats of the knights, bishops, rooks and queens of that colour, in
// centipawns, positive being good for it. `entry` must be the position's.
int pieceActivity(const Board& board, const BoardSets& sets, const PawnEntry& entry, Color color);

}  // namespace ombrin
