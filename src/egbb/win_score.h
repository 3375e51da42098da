#pragma once

#include "board/board.h"
#include "board/score.h"

namespace ombrin {

// What a position is worth to `winner`, who is known to win it: more, the nearer it looks to the
// mate, so that a search that cannot see the mate still comes closer to it. 0 when there is a pawn
// on the board: what brings a pawn ending forward is not told here.
Score winScore(const Board& board, Color winner);

}  // namespace ombrin
