#pragma once

#include <mutex>

#include "board/board.h"
#include "egbb/bitbases.h"
#include "search/search_limits.h"
#include "search/search_observer.h"
#include "search/search_report.h"
#include "search/search_state.h"
#include "search/tt.h"

namespace ombrin {

// Owns the search threads and is the only way to start, stop and steer a search. Unless it says
// otherwise, an operation is called on the command thread. One search at a time: a start waits for
// the one before. Boards and limits are copied; an observer must live until its search has ended.
class SearchController {
 public:
  static constexpr int MAX_THREADS = SearchState::MAX_THREADS;

  SearchController(Tt& tt, const Bitbases& bitbases);
  SearchController(const SearchController&) = delete;
  SearchController& operator=(const SearchController&) = delete;
  // Stops what runs and waits for every thread to end.
  ~SearchController();

  // Creates the main search thread, below normal priority, and applies the stored thread count.
  void boot();
  // Uses n threads, clamped to 1 to MAX_THREADS. Before boot() only remembers n. Waits for a
  // running search to end by itself, so stop it first.
  void setThreads(int n);
  int threadCount() const { return state_.threadCount; }

  // Searches on the main search thread and returns at once; before boot(), as search(). A
  // stopAndWait() or ponderhit() that follows is never lost, however early it comes.
  void start(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // Searches on the calling thread and returns when `finished` has been called.
  void search(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // To be called on the search thread, from within SearchObserver::finished: another search, which
  // begins when the finished one has returned. Until it ends the thread is not idle, and
  // stopAndWait() stops it whether it has begun or not (its `finished` is called all the same).
  void startNext(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // Stops the search and waits until it has ended, `finished` included. At once when none runs.
  // Hold no lock that `finished` takes.
  void stopAndWait();
  // A search that was started infinite goes on, and the time of these limits counts from its start.
  void ponderhit(const SearchLimits& limits);
  bool isIdle() const { return idle().isSet(); }
  // Has the table ready for a search to come; nothing happens during one. While no clock runs: it
  // takes up to seconds when the table is big and has not been used.
  void makeReady();

  // What the last search came to. While no search runs.
  SearchReport report() const { return state_.report(); }
  // Over all threads: interior, quiescence and pruned nodes. Any thread, any time.
  std::uint64_t nodes() const { return state_.nodes(); }

  Tt& tt() { return state_.tt; }

  // Searches that start from now on log nothing.
  void silence() { state_.quiet = true; }

 private:
  // A search that is asked for.
  struct Order {
    Board board;
    SearchLimits limits;
    SearchObserver* observer = nullptr;
  };

  void searchThreadMain();
  // Waits for the search before, and has the state ready for this one.
  void accept(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  void prepare(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // Runs the search that has been prepared, and those that its observer asks for.
  void runSearches();
  // Stops the current search, or the one that is about to begin.
  void requestStop();

  // Signalled while no search runs and none is about to.
  Event& idle() { return state_.mainThread().asleep; }
  const Event& idle() const { return state_.mainThread().asleep; }

  SearchState state_;
  bool booted_ = false;

  // What startNext leaves for its own thread.
  Order next_;
  bool hasNext_ = false;

  // Guards the two flags, and with them the moment at which a new search forgets the requests made
  // to the one before, so that none gets lost in between.
  std::mutex mutex_;
  bool stopping_ = false;       // stopAndWait is waiting: whatever begins is to be stopped
  bool stopRequested_ = false;  // the current search is, or the one about to begin
};

}  // namespace ombrin
