#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "board/score.h"
#include "search/search_limits.h"

namespace ombrin {

// What a search may take, in milliseconds, depending on how it goes.
struct TimeBudgets {
  enum Budget { EASY, ITERATION, NORMAL, EXTENDED, PANIC };

  // Shares the time of the limits out; without any time, as much as there is.
  explicit TimeBudgets(const SearchLimits& limits);

  std::uint32_t operator[](Budget budget) const { return milliseconds[budget]; }
  // What the front-ends call the nominal search time.
  std::uint32_t nominal() const { return milliseconds[NORMAL]; }

  std::array<std::uint32_t, 5> milliseconds;  // by Budget
};

// The clock of a search: keeps one of five budgets as the current limit, according to how the
// search is going. The searching thread notifies and asks it, other search threads ask; ponderhit()
// may come from any thread.
class SearchClock {
 public:
  SearchClock() { start({}); }

  // A search starts now, under these limits.
  void start(const SearchLimits& limits);
  // From now on the time counts, as these limits give it.
  void ponderhit(const SearchLimits& limits);

  // Notifications of the root search.
  void setIteration(int iteration);
  void iterationDone(Score score);  // a completed iteration
  void failHigh();                  // a later root move beat alpha
  void resolved();                  // its re-search is over
  void firstScore(Score score);     // the first root move of an iteration

  // Milliseconds since the search started.
  std::uint64_t elapsed() const;
  // Has the current limit passed?
  bool isTimeUp() const { return !isInfinite() && elapsed() > limit(); }
  // Is it too late to begin another iteration?
  bool iterationTimeout() const;
  bool isInfinite() const;
  // The budget that ends the search now, unless it is infinite.
  std::uint32_t limit() const;

 private:
  using Budget = TimeBudgets::Budget;

  void setBudgets(const SearchLimits& limits);
  std::uint32_t budget(Budget which) const;

  std::atomic<std::uint64_t> start_;
  std::atomic<bool> infinite_;
  std::atomic<Budget> state_;
  std::array<std::atomic<std::uint32_t>, 5> budgets_;
  int iteration_ = 0;
  Score lastScore_;  // of the last completed iteration
};

}  // namespace ombrin
