#pragma once

#include "board/board.h"
#include "eval/board_sets.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// What the knights, bishops, rooks and queens of a colour do; found in one walk over them.
struct PieceActivity {
  int worth = 0;       // placement, mobility and threats in centipawns, positive being good for it
  int kingAttack = 0;  // how much they bear on the enemy king, in units of their own; 0 when they
                       // are too few for that to count (attackForce)
};

// `sets` and `entry` must be the position's.
PieceActivity pieceActivity(const Board& board, const BoardSets& sets, const PawnEntry& entry,
                            Color color);

// How much an attack on a king counts by the material of the attacker, in 1/8.
int attackForce(Material attacker);

}  // namespace ombrin
