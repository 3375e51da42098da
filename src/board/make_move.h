#pragma once

#include "board/board.h"

namespace ombrin {

// Makes a move of the position: one that a generator produced, or that isMove or parseMove
// accepted, and that does not expose the mover's king. Returns the word with its check flags filled
// in; or the null move, and the board as before, when it is a castling or en-passant capture that
// is not legal after all. Save the board's SavedState first.
Move makeMove(Board& board, Move move);

// Takes back the last move made; `move` is the word that makeMove was given (flags do not matter).
void unmakeMove(Board& board, Move move, const SavedState& saved);

// Passes: the other side is to move, the en-passant square is gone, and no repetition reaches back
// beyond this point. Only for a side that is not in check.
void makeNullMove(Board& board);
void unmakeNullMove(Board& board, const SavedState& saved);

}  // namespace ombrin
