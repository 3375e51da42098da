// Counting the tree of legal moves.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace ombrin {

// The number of positions `depth` plies below; a depth below 1 is taken for 1. The board comes back
// as it was. `lastMove` is the move that led to the position, with its check flags.
std::uint64_t perftCount(Board& board, int depth, Move lastMove);

// perftCount below board.lastMove(), logged.
std::uint64_t perft(Board& board, int depth);

// Prints the count below every move, and their total, to standard output.
void divide(Board& board, int depth, Move lastMove);

}  // namespace ombrin
