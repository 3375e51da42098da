#pragma once

#include "board/move.h"
#include "board/score.h"

namespace ombrin {

// Listens to a search. All operations are called on the thread that searches and hold the search up
// until they return; they must not wait for the search to stop.
class SearchObserver {
 public:
  virtual ~SearchObserver() = default;

  // The search has ended: depth of the last iteration begun, best score, best move (null when there
  // is no legal move). Called once per search, as its very last act.
  virtual void finished(int depth, Score score, Move bestMove) = 0;
  // The first move of an iteration has been searched, or a later one has become best.
  virtual void reportIteration(int depth, Score score, Move bestMove) = 0;
  // The root move with that index (from 0) is searched next.
  virtual void reportCurrentMove(int depth, int moveNumber, Move move) = 0;
};

}  // namespace ombrin
