// Which moves of a node are searched deeper than the rest, which less deep, and which not at all.
#pragma once

#include "board/board.h"
#include "board/score.h"
#include "search/node_terms.h"

namespace ombrin {

// Is the move of an all node hopeless: does what it takes, on top of the futility value, stay below
// alpha? Recaptures, checks and far advanced pawns are not judged this way. When the move gives
// check through another piece it gets the x-ray flag.
bool isFutile(const Board& board, const NodeTerms& terms, Score alpha, Move& move);

// Plies by which a move that has just been made is searched deeper: `pawnEnding` when it takes the
// last piece, 1 when it recaptures, else 0. Nothing when the node's children are extended already.
int extension(const Board& board, const NodeTerms& terms, NodeType type, Move move, int pawnEnding);

// Is a late move too active for a reduction? A passed pawn's moves are; others when they lose
// nothing and attack something bigger or get out of the threat's way. Asked before it is made.
bool isActive(const Board& board, const NodeTerms& terms, Move move);

}  // namespace ombrin
