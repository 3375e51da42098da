#pragma once

#include <cstdint>

#include "board/move.h"
#include "board/score.h"
#include "search/pv_line.h"

namespace ombrin {

// What a search has found so far, or at its end.
struct SearchReport {
  int depth = 0;              // of the last iteration begun; 0 when there was none
  int selectiveDepth = 0;     // the greatest ply looked at
  Score score = DRAW;         // from the point of view of the side to move
  std::uint64_t nodes = 0;    // of all threads: interior, quiescence and pruned nodes
  std::uint64_t time = 0;     // milliseconds since the search started
  Move bestMove = NULL_MOVE;  // null when there is no legal move
  PvLine line = {};           // empty when no move has been searched

  // The reply to expect; null when there is none.
  Move ponderMove() const { return line[0] && score > Score::matedIn(2) ? line[1] : NULL_MOVE; }
};

// The root move that is searched next.
struct RootMoveReport {
  int depth = 0;
  int number = 0;  // from 0
  Move move = NULL_MOVE;
  std::uint64_t nodes = 0;  // as in SearchReport
  std::uint64_t time = 0;
  unsigned hashFull = 0;  // share of the table written by this search, in permille
};

}  // namespace ombrin
