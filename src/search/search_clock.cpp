#include "search/search_clock.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "platform/tick.h"

namespace ombrin {

namespace {

constexpr int DEFAULT_MILLISECONDS = 5000;
// What is left to plan with when the reserve exceeds the remaining time.
constexpr int EMERGENCY_MILLISECONDS = 100;
// Moves that a game is expected to last when its time is for all of it.
constexpr int SUDDEN_DEATH_MOVES = 40;
// Share of the base time, by budget.
constexpr std::array<float, 5> FACTORS = {0.04F, 0.4F, 1.0F, 2.5F, 4.0F};

// Relaxed throughout: each value stands for itself, and the limits are set before a search starts
// (handing the search over orders them). A ponderhit that changes `infinite_` may be seen a moment
// later, no more.
constexpr auto RELAXED = std::memory_order_relaxed;

}  // namespace

SearchClock::SearchClock() {
  setDefaults();
  reset();
}

void SearchClock::reset() {
  state_.store(NORMAL, RELAXED);
  start_.store(tickCount(), RELAXED);
  iteration_ = 0;
  lastScore_ = 0;
}

void SearchClock::setMoveTime(int milliseconds) {
  timeGap = 0;
  for (auto& budget : budgets_) {
    budget.store(static_cast<std::uint32_t>(std::max(milliseconds, 0)), RELAXED);
  }
}

void SearchClock::setDefaults() {
  setMoveTime(DEFAULT_MILLISECONDS);
}

void SearchClock::setTimeControl(int movesToGo, int remaining, int increment) {
  movesToGo_ = movesToGo;
  increment_ = increment;
  setRemaining(remaining);
}

void SearchClock::setRemaining(int remaining) {
  remaining_ = remaining;
  computeBudgets();
}

void SearchClock::computeBudgets() {
  constexpr double LONGEST = std::numeric_limits<int>::max();
  const bool suddenDeath = movesToGo_ < 1;
  const int moves = suddenDeath ? SUDDEN_DEATH_MOVES : movesToGo_;
  double available = static_cast<double>(remaining_) - timeGap;
  double numerator = available * 1.5;
  if (available < 0) {
    available = EMERGENCY_MILLISECONDS;
    numerator = EMERGENCY_MILLISECONDS * 1.5;
  }
  // Truncations keep every amount a whole number of milliseconds.
  double base = std::trunc(numerator / (moves + 1.0)) + increment_;
  // The first moves on its own are worth more time: nothing is in the table yet.
  if (moves > 7 && movesOutOfBook > 0 && movesOutOfBook < 5) {
    base += std::trunc(base * (5 - movesOutOfBook) * 0.25);
  }
  if (canPonder) base = std::trunc(base * 1.3);
  base = std::clamp(base, 0.0, LONGEST);
  for (std::size_t i = 0; i < budgets_.size(); ++i) {
    const double share = std::trunc(FACTORS[i] * static_cast<float>(base));
    budgets_[i].store(static_cast<std::uint32_t>(std::min(share, available)), RELAXED);
  }
}

void SearchClock::ponderhit() {
  infinite_.store(false, RELAXED);
}

void SearchClock::setIteration(int iteration) {
  iteration_ = iteration;
}

void SearchClock::iterationDone(Score score) {
  if (state_.load(RELAXED) != NORMAL) enter(NORMAL);
  lastScore_ = score;
}

void SearchClock::failHigh() {
  if (iteration_ != 0 && state_.load(RELAXED) < EXTENDED) enter(EXTENDED);
}

void SearchClock::resolved() {
  if (iteration_ != 0 && state_.load(RELAXED) == EXTENDED) enter(NORMAL);
}

void SearchClock::firstScore(Score score) {
  if (state_.load(RELAXED) != PANIC && iteration_ > 2 && score + 10 < lastScore_ &&
      std::abs(score.value()) <= 99) {
    enter(PANIC);
  }
}

void SearchClock::enter(Budget state) {
  state_.store(state, RELAXED);
}

std::uint64_t SearchClock::elapsed() const {
  return tickCount() - start_.load(RELAXED);
}

bool SearchClock::isTimeUp() const {
  return !isInfinite() && elapsed() > limit();
}

bool SearchClock::iterationTimeout() const {
  return !isInfinite() && state_.load(RELAXED) < EXTENDED && elapsed() > budget(ITERATION);
}

std::uint32_t SearchClock::budget(Budget which) const {
  return budgets_[which].load(RELAXED);
}

}  // namespace ombrin
