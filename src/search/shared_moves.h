#pragma once

#include "search/search_thread.h"
#include "search/split_node.h"

namespace ombrin {

// Searches moves of the split node until there are none left or the thread is stopped. The thread's
// board stands at the node.
void searchSharedMoves(SearchThread& thread, SplitNode& node);

}  // namespace ombrin
