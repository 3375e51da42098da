#pragma once

#include <string_view>

#include "board/board.h"

namespace ombrin {

// The move that a text in plain algebraic notation denotes, without check flags: a piece's letter,
// an origin file or rank where needed, "x" or nothing, the square, and check signs or glyphs; a
// pawn's move without a promotion. Where it gives a move, it is the one that parseMove gives.
// The null move says nothing but that parseMove has to be asked: it does so for every other
// form, for every text that is wrong or ambiguous, for castling, en passant and promotions, and out
// of check. An order of magnitude faster than parseMove, because it generates no moves.
Move findPlainMove(const Board& board, std::string_view text);

}  // namespace ombrin
