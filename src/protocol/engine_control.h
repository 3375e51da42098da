#pragma once

#include <mutex>

#include "board/board.h"
#include "search/search_controller.h"

namespace ombrin {

// What the console and the front-ends share beside the game: its lock, and the search.
//
// The game lock guards the game and all that the front-ends remember about it. The command loop
// holds it while it handles a line; a search thread takes it when a front-end's `finished` plays a
// move. No other lock is held when it is taken. So that `finished` can run while a command waits
// for the search to end, every operation below that waits lets go of the lock meanwhile; its caller
// must expect that `finished` has changed the game.
//
// All operations are called with the game lock held, on the command thread unless they say
// otherwise.
class EngineControl {
 public:
  explicit EngineControl(SearchController& controller) : controller_(controller) {}
  EngineControl(const EngineControl&) = delete;
  EngineControl& operator=(const EngineControl&) = delete;

  // Takes the game lock.
  [[nodiscard]] std::unique_lock<std::mutex> lockGame() { return std::unique_lock(mutex_); }

  SearchController& search() { return controller_; }

  // Stops whatever search runs and waits for it. At once when none runs.
  void stopSearch();
  // Stops a search that another observer listens to.
  void stopSearchOfOthers(const SearchObserver& observer);
  // Searches the board and returns at once. No search runs.
  void startSearch(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // Searches the board on this thread and returns when the search has ended. No search runs.
  void searchAndWait(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // On the search thread, from within an observer's `finished`: another search, which begins when
  // the finished one has returned.
  void searchNext(const Board& board, const SearchLimits& limits, SearchObserver& observer);
  // The ponder search that runs goes on under these limits.
  void ponderhit(const SearchLimits& limits);

 private:
  std::mutex mutex_;
  SearchController& controller_;
  const SearchObserver* observer_ = nullptr;  // of the last search
};

}  // namespace ombrin
