#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"
#include "eval/piece_activity.h"

namespace ombrin {

// How safe the king of that colour is while the opponent has the material to attack it, and how
// active when it has not; in centipawns, positive being good for that colour. `entry` must be the
// position's, and `attackers` what the opponent's pieces do in it.
int kingSafety(const Board& board, const PawnEntry& entry, Color color,
               const PieceActivity& attackers);

}  // namespace ombrin
