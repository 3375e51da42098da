// Moves as text.
#pragma once

#include <string>
#include <string_view>

#include "board/board.h"

namespace ombrin {

// "e2e4", "e4xd5", "e7e8=Q+", "f6xg7++", "O-O"; "%" for the null move.
std::string moveToText(Move move);

// "e2e4", "e7e8q"; "0000" for the null move: what the protocols speak.
std::string moveToCoordinates(Move move);

// The legal move of the position that the text denotes, in coordinate or algebraic notation, with
// its check flags; the null move when there is none or more than one. An illegal character is
// reported on standard output, an ambiguity on standard error.
Move parseMove(const Board& board, std::string_view text);

}  // namespace ombrin
