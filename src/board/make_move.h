#pragma once

#include "board/board.h"
#include "board/zobrist.h"

namespace ombrin {

// Makes a move of the position: one that a generator produced, or that isMove or parseMove
// accepted, and that does not expose the mover's king. Returns the word with its check flags filled
// in; or the null move, and the board as before, when it is a castling or en-passant capture that
// is not legal after all. Save the board's SavedState first.
Move makeMove(Board& board, Move move);

// The key behind a move that only moves a man, captures or both; other moves and lost rights change
// more of it. Good for a guess.
inline std::uint64_t keyAfter(const Board& board, Move move) {
  const Piece piece = board.at(move.from());
  return board.hash ^ pieceKey(piece, move.from()) ^ pieceKey(piece, move.to()) ^
         (move.isCapture() ? pieceKey(move.captured(), move.to()) : 0);
}

// Takes back the last move made; `move` is the word that makeMove was given (flags do not matter).
void unmakeMove(Board& board, Move move, const SavedState& saved);

// Passes: the other side is to move, the en-passant square is gone, and no repetition reaches back
// beyond this point. Only for a side that is not in check.
void makeNullMove(Board& board);
void unmakeNullMove(Board& board, const SavedState& saved);

}  // namespace ombrin
