// Which moves a position has. Nothing here allocates or touches the board.
#pragma once

#include "board/board.h"
#include "board/move_list.h"

namespace ombrin {

// The legal moves of the side to move, without check flags. `lastMove` is the move that led to the
// position, with its check flags; board.lastMove() when it is not given.
MoveList legalMoves(const Board& board, Move lastMove);
MoveList legalMoves(const Board& board);

// The same with the castlings and en-passant captures that isLegal() refuses still among them.
MoveList pseudoLegalMoves(const Board& board, Move lastMove);

// Of a pseudo-legal move: is it legal, too? A castling may lead through or into an attacked square,
// an en-passant capture may lay the own king bare. makeMove refuses the same moves.
bool isLegalCastling(const Board& board, Move move);
bool isLegalEnPassant(const Board& board, Move move);
inline bool isLegal(const Board& board, Move move) {
  if (move.isCastling()) return isLegalCastling(board, move);
  return !move.isEnPassant() || isLegalEnPassant(board, move);
}

// Is the word one of the pseudo-legal moves? Flags do not matter. For words that come from
// elsewhere: the transposition table, killer slots.
bool isMove(const Board& board, Move move, Move lastMove);
bool isMove(const Board& board, Move move);  // with board.lastMove()

// The generators. They write to `out`, which must have room for MAX_MOVES, and return the place
// behind the last move: the search has several batches of a node's moves side by side in one room.

// All pseudo-legal moves of a side that is not in check.
Move* genMoves(const Board& board, Move* out);
// All pseudo-legal moves out of the check that `lastMove` gives by its flags.
Move* genEvasions(const Board& board, Move* out, Move lastMove);

// One category each for a side that is not in check, without a test for pins: ask uncovers() of
// every move but the king's, and makeMove for castling and en passant.
Move* genCaptures(const Board& board, Move* out);   // captures and promotions
Move* genQuiet(const Board& board, Move* out);      // the rest, without king steps; with castling
Move* genKingQuiet(const Board& board, Move* out);  // king steps to empty squares, legal
// Non-captures that check directly or by x-ray.
Move* genQuietChecks(const Board& board, Move* out);
// Non-captures of pieces that mask a slider.
Move* genDiscoveredQuiet(const Board& board, Move* out);

}  // namespace ombrin
