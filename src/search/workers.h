#pragma once

#include "search/search_state.h"

namespace ombrin {

// Sets up the worker threads for a search by `n` threads, 1 to SearchState::MAX_THREADS, and
// returns how many there are. A worker sleeps between searches and works at split nodes during one,
// until SearchState::leaving. Only while no search runs and all workers sleep.
int setWorkerThreads(SearchState& state, int n);

}  // namespace ombrin
