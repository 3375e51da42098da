#pragma once

#include <cstdio>

#include "board/board.h"

namespace ombrin {

// Draws the position: a diagram with the moves played beside it, the material balance, the FEN and
// both keys. `mode` 0 shows piece letters, 1 piece kinds and above 1 piece indices, in hexadecimal.
// Nothing happens when the stream is null.
void printBoard(const Board& board, std::FILE* stream, int mode = 0);

}  // namespace ombrin
