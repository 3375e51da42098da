// Move generators. Each writes moves to `out`, which must have room for MAX_MOVES, and returns the
// position after the last one. None allocates. They take pieces off the board's lists while they
// work and put them back, so the board must not be shared while one runs.
#pragma once

#include "board/board.h"

namespace ombrin {

// All moves of the side to move when it is not in check. Legal but for castling through or into an
// attacked square and en-passant captures that expose the king, which makeMove refuses.
Move* genMoves(Board& board, Move* out);

// All moves out of the check that `lastMove` gives by its flags. Legal but for en-passant captures
// that expose the king.
Move* genEvasions(Board& board, Move* out, Move lastMove);

// genEvasions when `lastMove` gives check, else genMoves.
Move* genLegal(Board& board, Move* out, Move lastMove);

// Moves of knights, bishops, rooks and queens of the side to move that end on `square`.
Move* genToSquare(const Board& board, Move* out, Square square);

// Is the word a move that genLegal(board, lastMove) yields? Flags do not matter. For words that
// come from elsewhere: the transposition table, killer slots.
bool isMove(Board& board, Move move, Move lastMove);
bool isMove(Board& board, Move move);  // with board.lastMove()

// One category each for a side that is not in check, without a test for pins: ask uncovers() of
// every move but the king's, and makeMove for castling and en passant.
Move* genCaptures(Board& board, Move* out);     // captures and promotions
Move* genQuiet(Board& board, Move* out);        // the rest, without king steps; castling included
Move* genKingQuiet(Board& board, Move* out);    // king steps to empty squares, legal
Move* genQuietChecks(Board& board, Move* out);  // non-captures that check directly or by x-ray
Move* genDiscoveredQuiet(Board& board, Move* out);  // non-captures of pieces that mask a slider

}  // namespace ombrin
