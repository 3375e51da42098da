#pragma once

#include "board/board.h"

namespace ombrin {

// Returns when castling rights, piece lists, key and material agree with the pieces on the board;
// otherwise prints a diagnosis that names `label` and `move` to standard output and aborts.
void checkBoard(const Board& board, const char* label, Move move);

}  // namespace ombrin
