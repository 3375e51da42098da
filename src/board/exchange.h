#pragma once

#include "board/board.h"

namespace ombrin {

// Static exchange evaluation by swap-off (see "Static Exchange Evaluation", Chess Programming
// Wiki): what `side` wins in pawn units by making `move` when both sides then capture on its
// destination as long as it pays. A move that loses nothing is worth all that it takes: the
// captured piece, and 8 more for promoting to a queen. The board comes back as it was.
int see(Board& board, Color side, Move move);

}  // namespace ombrin
