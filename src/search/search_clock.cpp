#include "search/search_clock.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "platform/tick.h"

namespace ombrin {

namespace {

constexpr int LONGEST = std::numeric_limits<int>::max();
// What is left to plan with when the reserve exceeds the remaining time.
constexpr int EMERGENCY_MILLISECONDS = 100;
// Moves that a game is expected to last when its time is for all of it.
constexpr int SUDDEN_DEATH_MOVES = 40;
// Share of the base time, by budget.
constexpr std::array<float, 5> FACTORS = {0.04F, 0.4F, 1.0F, 2.5F, 4.0F};

std::array<std::uint32_t, 5> share(const GameTime& time, bool canPonder, int movesOutOfBook) {
  const bool suddenDeath = time.movesToGo < 1;
  const int moves = suddenDeath ? SUDDEN_DEATH_MOVES : time.movesToGo;
  double available = static_cast<double>(time.remaining) - time.reserve;
  double numerator = available * 1.5;
  if (available < 0) {
    available = EMERGENCY_MILLISECONDS;
    numerator = EMERGENCY_MILLISECONDS * 1.5;
  }
  // Truncations keep every amount a whole number of milliseconds.
  double base = std::trunc(numerator / (moves + 1.0)) + time.increment;
  // The first moves on its own are worth more time: nothing is in the table yet.
  if (moves > 7 && movesOutOfBook > 0 && movesOutOfBook < 5) {
    base += std::trunc(base * (5 - movesOutOfBook) * 0.25);
  }
  if (canPonder) base = std::trunc(base * 1.3);
  base = std::clamp<double>(base, 0, LONGEST);
  std::array<std::uint32_t, 5> budgets;
  for (std::size_t i = 0; i < budgets.size(); ++i) {
    const double part = std::trunc(FACTORS[i] * static_cast<float>(base));
    budgets[i] = static_cast<std::uint32_t>(std::min(part, available));
  }
  return budgets;
}

// Relaxed throughout, but for `infinite_`: each value stands for itself, and the limits are set
// before a search starts (handing the search over orders them).
constexpr auto RELAXED = std::memory_order_relaxed;

}  // namespace

TimeBudgets::TimeBudgets(const SearchLimits& limits) {
  if (limits.game && !limits.moveTime) {
    milliseconds = share(*limits.game, limits.canPonder, limits.movesOutOfBook);
  } else {
    const int time = limits.moveTime.value_or(LONGEST);
    milliseconds.fill(static_cast<std::uint32_t>(std::max(time, 0)));
  }
}

void SearchClock::start(const SearchLimits& limits) {
  setBudgets(limits);
  infinite_.store(limits.infinite, RELAXED);
  state_.store(TimeBudgets::NORMAL, RELAXED);
  start_.store(tickCount(), RELAXED);
  iteration_ = 0;
  lastScore_ = 0;
}

// Release: who finds that the time counts, finds the budgets that were meant.
void SearchClock::ponderhit(const SearchLimits& limits) {
  setBudgets(limits);
  infinite_.store(false, std::memory_order_release);
}

bool SearchClock::isInfinite() const {
  return infinite_.load(std::memory_order_acquire);
}

void SearchClock::setBudgets(const SearchLimits& limits) {
  const TimeBudgets budgets(limits);
  for (std::size_t i = 0; i < budgets_.size(); ++i) {
    budgets_[i].store(budgets.milliseconds[i], RELAXED);
  }
}

void SearchClock::setIteration(int iteration) {
  iteration_ = iteration;
}

void SearchClock::iterationDone(Score score) {
  state_.store(TimeBudgets::NORMAL, RELAXED);
  lastScore_ = score;
}

void SearchClock::failHigh() {
  if (iteration_ != 0 && state_.load(RELAXED) < TimeBudgets::EXTENDED) {
    state_.store(TimeBudgets::EXTENDED, RELAXED);
  }
}

void SearchClock::resolved() {
  if (iteration_ != 0 && state_.load(RELAXED) == TimeBudgets::EXTENDED) {
    state_.store(TimeBudgets::NORMAL, RELAXED);
  }
}

void SearchClock::firstScore(Score score) {
  if (state_.load(RELAXED) != TimeBudgets::PANIC && iteration_ > 2 && score + 10 < lastScore_ &&
      std::abs(score.value()) <= 99) {
    state_.store(TimeBudgets::PANIC, RELAXED);
  }
}

std::uint64_t SearchClock::elapsed() const {
  return tickCount() - start_.load(RELAXED);
}

bool SearchClock::iterationTimeout() const {
  return !isInfinite() && state_.load(RELAXED) < TimeBudgets::EXTENDED &&
         elapsed() > budget(TimeBudgets::ITERATION);
}

std::uint32_t SearchClock::limit() const {
  return budget(state_.load(RELAXED));
}

std::uint32_t SearchClock::budget(Budget which) const {
  return budgets_[which].load(RELAXED);
}

}  // namespace ombrin
