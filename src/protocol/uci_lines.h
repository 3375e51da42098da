// The lines of the Universal Chess Interface that report on a search, as texts.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "board/move.h"
#include "board/score.h"

namespace ombrin {

// Milliseconds since the search started, and the nodes of all threads in that time.
struct SearchEffort {
  std::uint64_t time = 0;
  std::uint64_t nodes = 0;
};

// "info depth ... pv ...".
std::string uciInfoLine(int depth, int selectiveDepth, Score score, SearchEffort effort,
                        std::span<const Move> line);
// "info currmove ..."; moveNumber counts from 0, hashFull is in permille.
std::string uciCurrentMoveLine(Move move, int moveNumber, SearchEffort effort, unsigned hashFull);
// "bestmove ..."; without a ponder move when that is null.
std::string uciBestMoveLine(Move bestMove, Move ponderMove);

}  // namespace ombrin
