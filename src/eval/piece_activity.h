#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// What the knights, bishops, rooks and queens of a colour do; found in one walk over them.
struct PieceActivity {
  int worth = 0;       // placement, mobility and threats in centipawns, positive being good for it
  unsigned force = 0;  // how much an attack by such pieces counts, in 1/8
  unsigned kingAttack = 0;  // how much they bear on the enemy king, in units of their own; only
                            // where force is not 0
};

// By colour. `entry` must be the position's, and `force` its MaterialFacts::attackForce.
std::array<PieceActivity, 2> pieceActivity(const Board& board, const PawnEntry& entry,
                                           const std::array<std::uint8_t, 2>& force);

}  // namespace ombrin
