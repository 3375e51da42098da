#include "search/search_thread.h"

namespace ombrin {

void SearchThread::reset() {
  killers = {};
  mateKiller = {};
  lastCut = {};
  seldepth = 0;
  nullMoves = 0;
  counters = {};
  kills = {};
  splitNode.store(nullptr, std::memory_order_relaxed);
  abortMark = 0;
  splitNodesInUse = 0;
  evaluator.evaluations = 0;
  evaluator.pawnHash().hits = 0;
  evaluator.pawnHash().misses = 0;
}

}  // namespace ombrin
