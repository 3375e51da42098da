#pragma once

#include "search/search_state.h"

namespace ombrin {

// One complete search of the position on the main thread's board, on the calling thread: searches
// to depth 1, 2, 3 and so on until a limit or requestStop() ends it, reports to the observer and
// the log, and leaves its results in the state. Everything about the search before must have been
// reset.
void iterate(SearchState& state);

// One iteration: every root move, within the window and to that depth. The best score; 0 when the
// search was stopped before the first move was done with, and then rootPvDepth is not this depth.
Score searchRoot(SearchState& state, Score alpha, Score beta, int depth);

}  // namespace ombrin
