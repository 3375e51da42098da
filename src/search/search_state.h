#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "board/board.h"
#include "board/score.h"
#include "egbb/bitbases.h"
#include "search/pv_line.h"
#include "search/search_clock.h"
#include "search/search_observer.h"
#include "search/search_report.h"
#include "search/search_thread.h"
#include "search/tt.h"

namespace ombrin {

// A move of the root position.
struct RootMove {
  Move move;  // with its check flags
  // What the list is sorted by: the exchange value at first, then the nodes that the move took.
  std::int64_t key = 0;
  Score score;  // of its last search
};

// How far the bitbases are probed, in men without the kings; below 0 never.
struct BitbaseLimits {
  int probe = -1;   // men that they cover at all
  int memory = -1;  // men that they answer for at every ply
  int ply = 0;      // from this one on, only what they hold in memory; new in every iteration
};

// A split depth that no search reaches.
inline constexpr int NO_SPLIT_DEPTH = 128;

// What the threads of one search share, and its results. The main search thread writes all that is
// not atomic; others read it while no search runs, or, when they join in, after a split node has
// been handed to them.
struct SearchState {
  static constexpr int MAX_THREADS = 8;

  SearchState(Tt& table, const Bitbases& outside);

  // Ends the search: sets `stopped` and every thread's stop flag. Any thread.
  void requestStop();
  // For the next search. Only while none runs.
  void clearStop();
  void forgetProgress();
  void waitForWorkers();  // until all that there are sleep
  void wakeWorkers();     // those that are in use
  // Stops the search when the thread has used up its time or nodes; has it?
  bool stopIfSpent(const SearchThread& thread);
  // The same with the nodes of all threads; or is it stopped already?
  bool stopIfSpent();
  bool isStopped() const { return stopped.load(std::memory_order_relaxed); }

  // Over all threads: interior, quiescence and pruned nodes. Any thread, any time.
  std::uint64_t nodes() const;
  // Share of the table written by this search, in permille. Any thread, any time.
  unsigned hashFull() const;
  // What has been found so far. Main search thread, or any while no search runs.
  SearchReport report() const;
  SearchThread& mainThread() { return *threads[0]; }
  const SearchThread& mainThread() const { return *threads[0]; }

  Tt& tt;
  const Bitbases& bitbases;
  SearchClock clock;
  std::array<std::unique_ptr<SearchThread>, MAX_THREADS> threads;
  int threadCount = 1;

  // What the current search was asked for.
  int maxDepth = 0;
  std::uint64_t nodeLimit = 0;  // 0: none
  bool quiet = false;
  SearchObserver nobody;
  SearchObserver* observer = &nobody;

  std::atomic<bool> stopped{false};
  bool leaving = false;  // with a thread's `wake`: it is to end

  // The parallel search, on cache lines of its own: guards who is idle and who works where.
  alignas(64) SpinLock splitLock;
  std::atomic<int> idleCount{0};  // relaxed: read without the lock only to see whether to try
  alignas(64) Board rootBoard;    // where the workers begin
  BitbaseLimits bitbaseLimits;
  int minSplitDepth = NO_SPLIT_DEPTH;  // what remains to be searched below a node that is split

  // The root: its moves, the best one first, and what is known of it.
  std::vector<RootMove> rootMoves;
  PvLine rootPv;
  int rootPvDepth = 0;  // the iteration that found rootPv
  Score bestScore;
  int depth = 0;  // the last iteration begun

  // Copies of depth and the number of root moves that any thread may read; 0 between searches.
  std::atomic<int> iteration{0};
  std::atomic<int> rootMoveCount{0};
};

}  // namespace ombrin
