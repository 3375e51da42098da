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
  SearchClock& clock() { return controller_.clock(); }

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
  // Makes the observer the listener of the searches from now on; a search that another one listens
  // to is stopped.
  void listen(SearchObserver& observer);
  // Starts a search of the board, whose listener the observer becomes, and returns. No search runs.
  void startSearch(SearchObserver& observer);
  // On the search thread, from within the observer's `finished`: starts another search of the board
  // when the finished one has returned.
  void searchNext() { controller_.startNext(board_); }
  // Searches the board on this thread, for whoever listens. No search runs.
  void searchHere();
  // Starts it for whoever listens. No search runs.
  void searchAside();
  // The ponder search that runs becomes a normal one.
  void ponderhit();

 private:
  std::mutex mutex_;
  Board board_;
  Board draft_;  // where a position is set up until it is known to be good
  SearchController& controller_;
  const SearchObserver* listener_ = nullptr;
  bool positionRefused_ = false;
  std::uint32_t settlements_ = 0;
};

}  // namespace ombrin
