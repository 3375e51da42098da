// The search of one tree by several threads, over split nodes (the family of "Young Brothers Wait":
// R. Feldmann, "Game Tree Search on Massively Parallel Systems", 1993; helping only below one's own
// node is R. Hyatt's, "The Dynamic Tree-Splitting Parallel Search Algorithm", 1997).
//
// Order of locks: the global one (SearchState::splitLock), then those of split nodes and threads,
// never the other way round.
#pragma once

#include "search/move_picker.h"
#include "search/search_thread.h"
#include "search/split_node.h"

namespace ombrin {

// A split node for the thread, with every idle thread that may help assigned to it; null when there
// is none, or when another thread is just looking for help. Must be followed by searchSplit.
SplitNode* trySplit(SearchThread& thread);

// What a node has found so far.
struct NodeResult {
  Score alpha;
  Score best;
  Move bestMove;
};

// The owner's part: hands `move` and all that the picker still has over to the split node, searches
// them together with the threads that have joined, and returns when all have left, with the node's
// result. Nothing counts when the thread is stopped then.
NodeResult searchSplit(SearchThread& thread, SplitNode& node, const NodeTerms& terms, NodeType type,
                       int ply, Score beta, const NodeResult& soFar, Move move, MovePicker& picker);

// Searches moves of the split node until there are none left or the thread is stopped. The thread's
// board stands at the node.
void splitNodeSearch(SearchThread& thread, SplitNode& node);

// A move has failed high: nobody needs to search on at or below the node.
void abortSplit(SearchThread& thread, SplitNode& node, Move move, Score score);

// The life of a worker thread: it sleeps between searches and works at split nodes during one,
// until SearchState::leaving.
void workerMain(SearchThread& thread);

// Sets up the workers for `n` threads, 1 to SearchState::MAX_THREADS, and returns how many there
// are. Only while no search runs and all workers sleep.
int setWorkerThreads(SearchState& state, int n);

}  // namespace ombrin
