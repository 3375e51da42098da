#pragma once

#include <cstdint>
#include <mutex>
#include <string_view>

#include "board/board.h"
#include "search/search_controller.h"

namespace ombrin {

// What the console and the front-ends share: the game board, its lock, and the search on it.
//
// The game lock guards the board and all that the front-ends remember about the game. The command
// loop holds it while it handles a line; a search thread takes it when a front-end's `finished`
// changes the board. No other lock is held when it is taken. So that `finished` can run while a
// command waits for the search to end, every operation below that waits lets go of the lock
// meanwhile; its caller must expect that `finished` has changed the game.
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

  Board& board() { return board_; }
  const Board& board() const { return board_; }
  SearchController& search() { return controller_; }

  // Sets the board up. When the text is refused, the game stays as it was, and positionRefused()
  // holds until the next set-up that succeeds.
  bool setPosition(std::string_view fen);
  bool positionRefused() const { return positionRefused_; }
  // Makes a legal move of the game's position and records it as the move that led to the root.
  // Returns the word with its check flags.
  Move makeGameMove(Move move);
  // Closes the gaps in the piece lists: the moves made so far stay made.
  void settleGame();
  // The number of times that a move made before could no longer be taken back afterwards. Someone
  // who remembers how to take back moves compares it first.
  std::uint32_t settlements() const { return settlements_; }

  // Stops whatever search runs and waits for it. At once when none runs.
  void stopSearch();
  // Stops a search that another observer listens to.
  void stopSearchOfOthers(const SearchObserver& observer);
  // Searches the board and returns at once. No search runs.
  void startSearch(const SearchLimits& limits, SearchObserver& observer);
  // Searches the board on this thread and returns when the search has ended. No search runs.
  void searchAndWait(const SearchLimits& limits, SearchObserver& observer);
  // On the search thread, from within an observer's `finished`: another search of the board, which
  // begins when the finished one has returned.
  void searchNext(const SearchLimits& limits, SearchObserver& observer);
  // The ponder search that runs goes on under these limits.
  void ponderhit(const SearchLimits& limits);

 private:
  std::mutex mutex_;
  Board board_;
  Board draft_;  // where a position is set up until it is known to be good
  SearchController& controller_;
  const SearchObserver* observer_ = nullptr;  // of the last search
  bool positionRefused_ = false;
  std::uint32_t settlements_ = 0;
};

}  // namespace ombrin
