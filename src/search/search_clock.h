#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "board/score.h"

namespace ombrin {

// Turns the limits that a front-end hands over into five time budgets, and during a search keeps
// one of them as the current limit, according to how the search is going. All times are
// milliseconds.
//
// A front-end fills the clock while no search runs; during a search the searching thread notifies
// and asks it, and ponderhit() may come from any thread.
class SearchClock {
 public:
  // Budget indices; the state is the index of the budget that is the current limit.
  enum Budget { EASY = 0, ITERATION = 1, NORMAL = 2, EXTENDED = 3, PANIC = 4 };

  SearchClock();

  // Back to the normal limit, counted from now. Called before limits are set, and when a search
  // starts.
  void reset();
  // The same time for this move whatever happens.
  void setMoveTime(int milliseconds);
  // movesToGo below 1 means that the remaining time is for the whole game.
  void setTimeControl(int movesToGo, int remaining, int increment);
  // The budgets anew for a remaining time, under the stored moves to go and increment.
  void setRemaining(int remaining);
  // Every budget at its default of 5 seconds and no time gap: what a search gets that is told
  // nothing about time.
  void setDefaults();

  // An infinite search gets a normal limit.
  void ponderhit();

  // Notifications of the root search.
  void setIteration(int iteration);
  void iterationDone(Score score);  // a completed iteration
  void failHigh();                  // a later root move beat alpha
  void resolved();                  // its re-search is over
  void firstScore(Score score);     // the first root move of an iteration

  // Milliseconds since the search started.
  std::uint64_t elapsed() const;
  // Has the current limit passed?
  bool isTimeUp() const;
  // Is it too late to begin another iteration?
  bool iterationTimeout() const;
  bool isInfinite() const { return infinite_.load(std::memory_order_relaxed); }
  void setInfinite(bool infinite) { infinite_.store(infinite, std::memory_order_relaxed); }
  std::uint32_t budget(Budget which) const;
  // The budget that ends the search now, unless it is infinite.
  std::uint32_t limit() const { return budget(state_.load(std::memory_order_relaxed)); }
  // The normal budget: what the front-ends call the nominal search time.
  std::uint32_t nominal() const { return budget(NORMAL); }

  // Set by the front-ends before a search.
  bool canPonder = false;
  std::uint64_t nodeLimit = 0;  // 0: none
  int depth = 0;           // as the front-end gave it; the controller holds the one that counts
  int movesOutOfBook = 0;  // moves since the game left the book; 0: not known
  int timeGap = 0;         // kept in reserve of the remaining time

 private:
  void computeBudgets();
  void enter(Budget state);

  std::atomic<std::uint64_t> start_;
  std::atomic<bool> infinite_{false};
  std::atomic<Budget> state_{NORMAL};
  std::array<std::atomic<std::uint32_t>, 5> budgets_;
  int movesToGo_ = 0;
  int remaining_ = 0;
  int increment_ = 0;
  int iteration_ = 0;
  Score lastScore_;  // of the last completed iteration
};

}  // namespace ombrin
