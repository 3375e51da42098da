#pragma once

#include "board/board.h"
#include "eval/board_sets.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// What the knights, bishops, rooks and queens of a colour do; found in one walk over them.
struct PieceActivity {
  int worth = 0;       // placement, mobility and threats in centipawns, positive being good for it
  unsigned force = 0;  // how much an attack by such pieces counts, in 1/8
  unsigned kingAttack = 0;  // how much they bear on the enemy king, in units of their own; only
                            // where force is not 0
};

// `sets` and `entry` must be the position's.
PieceActivity pieceActivity(const Board& board, const BoardSets& sets, const PawnEntry& entry,
                            Color color);

}  // namespace ombrin
