#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

#include "board/board.h"
#include "board/score.h"
#include "egbb/bitbases.h"
#include "search/search_clock.h"
#include "search/search_observer.h"
#include "search/tt.h"

namespace ombrin {

// Owns the search threads and is the only way to start, stop and steer a search. Unless it says
// otherwise, an operation is called on the command thread, and results are read while no search
// runs. One search at a time: a start waits for the one before.
class SearchController {
 public:
  static constexpr int MAX_THREADS = 8;

  SearchController(Tt& tt, const Bitbases& bitbases, SearchClock& clock);
  SearchController(const SearchController&) = delete;
  SearchController& operator=(const SearchController&) = delete;
  // Stops what runs and waits for every thread to end.
  ~SearchController();

  // Creates the main search thread, below normal priority, and applies the stored thread count.
  void boot();
  // Uses n threads, clamped to 1 to MAX_THREADS. Before boot() only remembers n. Waits for a
  // running search to end by itself, so stop it first.
  void setThreads(int n);
  int threadCount() const;

  // Searches a copy of `board`. Synchronous: on the calling thread, and returns after `finished`.
  // Asynchronous: waits until the main search thread is idle, hands the copy over, and returns. A
  // stopAndWait() or ponderhit() that follows is never lost, however early it comes.
  void start(const Board& board, bool async);
  // To be called on the search thread, from within SearchObserver::finished: a search of a copy of
  // `board` that begins when the finished one has returned. Until it ends the thread is not idle,
  // and stopAndWait() stops it whether it has begun or not (its `finished` is called all the same).
  void startNext(const Board& board);
  // Stops the search and waits until it has ended, `finished` included. At once when none runs.
  // Hold no lock that `finished` takes.
  void stopAndWait();
  // A search that was started infinite goes on under the clock's limits.
  void ponderhit();
  bool isIdle() const;
  // Has the table ready for a search to come; nothing happens during one. While no clock runs: it
  // takes up to seconds when the table is big and has not been used.
  void makeReady();

  // Settings, read when a search starts. A depth below 1 means no limit of its own.
  int maxDepth = 0;
  bool quiet = false;                          // no log output
  void setListener(SearchObserver* listener);  // may be null; not owned

  // Results of the last search; also during one, from within the observer's operations.
  Move bestMove() const;
  Move ponderMove() const;  // the expected reply, null when there is none
  Score bestScore() const;
  int depth() const;
  int selectiveDepth() const;
  std::span<const Move> principalVariation() const;
  // Over all threads: interior, quiescence and pruned nodes. Any thread, any time.
  std::uint64_t nodes() const;
  // Share of the table written by this search, in permille. Any thread, any time.
  unsigned hashFull() const;

  SearchClock& clock();
  Tt& tt();

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace ombrin
