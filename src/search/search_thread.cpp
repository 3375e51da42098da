#include "search/search_thread.h"

namespace ombrin {

void SearchThread::reset() {
  killers = {};
  mateKiller = {};
  lastCut = {};
  seldepth = 0;
  nullMoves = 0;
  counters = {};
  evaluator.evaluations = 0;
  evaluator.pawnHash().hits = 0;
  evaluator.pawnHash().misses = 0;
}

}  // namespace ombrin
