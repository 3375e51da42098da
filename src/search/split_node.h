// A node whose moves several threads search together (the family of "Young Brothers Wait": R.
// Feldmann, "Game Tree Search on Massively Parallel Systems", 1993; helping only below one's own
// node is R. Hyatt's, "The Dynamic Tree-Splitting Parallel Search Algorithm", 1997): the record,
// its locks, and how threads come and go. How a move is searched is the business of whoever splits.
//
// Order of locks: the global one (SearchState::splitLock), then those of split nodes and threads,
// never the other way round.
#pragma once

#include <array>
#include <atomic>

#include "board/move_list.h"
#include "search/node_terms.h"
#include "search/spin_lock.h"

namespace ombrin {

class MovePicker;
struct SearchThread;

// Each thread that works here searches on its own board. The owner, the thread that met the node,
// fills the record in and stays until all have left.
struct SplitNode {
  // How far the owner has got with filling it in. Stored with release and loaded with acquire: who
  // sees a state sees all that was filled in before it.
  enum State { SETTING_UP = 1, PATH_READY = 2, COMPLETE = 3 };
  static constexpr int MAX_PATH = 128;

  // The next move to search, with its number in the list; null when there is none left.
  Move take(int& number) {
    number = next.fetch_add(1, std::memory_order_relaxed);
    return number < end.load(std::memory_order_relaxed) ? moves[number] : NULL_MOVE;
  }
  Score currentAlpha() const { return alpha.load(std::memory_order_relaxed); }
  Score currentBest() const { return best.load(std::memory_order_relaxed); }

  std::array<Move, MAX_MOVES + 1> moves;  // ends with a null move
  std::array<Move, MAX_PATH> path;        // the first terms.ply are the moves from the root to here

  std::atomic<int> state{SETTING_UP};
  // Index of the next move to hand out, and of the end. Relaxed: who takes an index below the end
  // has seen COMPLETE, and the moves with it. An abort sets the end to 0.
  std::atomic<int> next{0};
  std::atomic<int> end{0};
  // Threads that work here, the owner included. Leaving is a release and the owner's last look an
  // acquire, so that the owner sees all that the others have left here.
  std::atomic<int> threads{0};

  // Constant once the state is PATH_READY.
  SearchThread* owner = nullptr;
  // The split node that the owner was working for. Written under the global lock.
  std::atomic<SplitNode*> parent{nullptr};
  NodeTerms terms;
  NodeType type = PV_NODE;
  // Takes moves from here and searches them, until there are none left or the thread is stopped.
  // The thread's board stands at the node.
  void (*search)(SearchThread& thread, SplitNode& node) = nullptr;
  // Constant once it is COMPLETE: where in the list the killers begin, and the quiet moves.
  int killerStart = 0;
  int quietStart = 0;

  // Written under the lock, together with the owner's line of this ply. Relaxed when read without
  // it: an old value costs time and is never wrong.
  SpinLock lock;
  std::atomic<Score> alpha;
  std::atomic<Score> best;
  Move bestMove;  // only under the lock, or by the owner when the others have left
};

// A split node for the thread, with every idle thread that may help assigned to it; null when there
// is none, or when another thread is just looking for help. The caller fills in terms, type and
// search and then calls searchSplit.
SplitNode* trySplit(SearchThread& thread);

// The owner's part: hands `move` and all that the picker still has over to the split node, searches
// them together with the threads that have joined, and returns when all have left, with the node's
// verdict. Nothing counts when the thread is stopped then.
Verdict searchSplit(SearchThread& thread, SplitNode& node, const Verdict& soFar, Move move,
                    MovePicker& picker);

// A move has failed high: nobody needs to search on at or below the node.
void abortSplit(SearchThread& thread, SplitNode& node, Move move, Score score);

// A worker's part: waits, without work, until it is assigned to a split node, and takes its share
// of it. Returns when the share is done or the thread is stopped.
void joinSplit(SearchThread& thread);

// Ends an abort: what still stops the thread is the end of the search.
void resume(SearchThread& thread);

}  // namespace ombrin
