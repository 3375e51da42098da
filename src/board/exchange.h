#pragma once

#include "board/board.h"

namespace ombrin {

// What a move takes at once, in pawn units: the captured piece, and 8 more for promoting to a
// queen.
constexpr int gainOf(Move move) {
  return move.captured().value() + (move.promotion() == QUEEN ? 8 : 0);
}

// Static exchange evaluation by swap-off (see "Static Exchange Evaluation", Chess Programming
// Wiki): what `side` wins in pawn units by making `move` when both sides then capture on its
// destination as long as it pays. A move that loses nothing is worth all that it takes: gainOf().
int see(const Board& board, Color side, Move move);

// see() < 0, found sooner than by how much.
bool losesMaterial(const Board& board, Color side, Move move);

}  // namespace ombrin
