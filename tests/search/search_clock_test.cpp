#include "search/search_clock.h"

#include <gtest/gtest.h>

#include <array>

namespace ombrin {
namespace {

using Budgets = std::array<std::uint32_t, 5>;

TEST(TimeBudgetsTest, ShareTheRemainingTimeOut) {
  const struct {
    const char* what;
    int movesToGo, remaining, increment, gap, outOfBook;
    bool ponder;
    Budgets expected;
  } cases[] = {
      {"sudden death", 0, 60000, 0, 0, 0, false, {87, 878, 2195, 5487, 8780}},
      {"last move before the control", 1, 10000, 0, 0, 0, false, {300, 3000, 7500, 10000, 10000}},
      {"forty moves", 40, 60000, 0, 0, 0, false, {87, 878, 2195, 5487, 8780}},
      {"increment", 0, 60000, 1000, 0, 0, false, {127, 1278, 3195, 7987, 12780}},
      {"reserve", 0, 60000, 0, 3000, 0, false, {83, 834, 2085, 5212, 8340}},
      {"in the reserve", 0, 1000, 0, 3000, 0, false, {0, 1, 3, 7, 12}},
      {"in the reserve, increment", 0, 1000, 2000, 3000, 0, false, {80, 100, 100, 100, 100}},
      {"first move out of book", 0, 60000, 0, 0, 1, false, {175, 1756, 4390, 10975, 17560}},
      {"fifth move out of book", 0, 60000, 0, 0, 5, false, {87, 878, 2195, 5487, 8780}},
      {"few moves, out of book", 7, 60000, 0, 0, 1, false, {450, 4500, 11250, 28125, 45000}},
      {"pondering", 0, 60000, 0, 0, 0, true, {114, 1141, 2853, 7132, 11412}},
      {"no time at all", 0, 0, 0, 0, 0, false, {0, 0, 0, 0, 0}},
      {"a millisecond", 0, 1, 0, 0, 0, false, {0, 0, 0, 0, 0}},
      {"fifty milliseconds", 0, 50, 0, 0, 0, false, {0, 0, 1, 2, 4}},
      {"nothing but the increment", 0, 0, 100, 0, 0, false, {0, 0, 0, 0, 0}},
      {"last move, in the reserve", 1, 50, 0, 3000, 0, false, {3, 30, 75, 100, 100}},
      {"overdrawn", 0, -500, 0, 0, 0, false, {0, 1, 3, 7, 12}},
      {"negative increment", 0, 1000, -5000, 0, 0, false, {0, 0, 0, 0, 0}},
  };
  for (const auto& test : cases) {
    const GameTime time{test.movesToGo, test.remaining, test.increment, test.gap};
    const TimeBudgets budgets(
        {.game = time, .canPonder = test.ponder, .movesOutOfBook = test.outOfBook});
    EXPECT_EQ(budgets.milliseconds, test.expected) << test.what;
  }
}

TEST(TimeBudgetsTest, AreAllTheMoveTimeWhereThereIsOne) {
  const TimeBudgets budgets({.moveTime = 1234, .game = GameTime{0, 60000, 0, 3000}});
  EXPECT_EQ(budgets.milliseconds, (Budgets{1234, 1234, 1234, 1234, 1234}));
}

// Budgets that are over or far away tell which of them is the current limit.
class SearchClockStates : public testing::Test {
 protected:
  // Normal time is up at once, extended time is not.
  SearchClockStates() { clock.start(limits); }
  std::uint32_t limitAfter(Score before, Score now, int iteration) {
    clock.start(limits);
    clock.setIteration(iteration - 1);
    clock.iterationDone(before);
    clock.setIteration(iteration);
    clock.firstScore(now);
    return clock.limit();
  }
  const SearchLimits limits{.game = GameTime{1, 1000000, 0, 0}};
  const TimeBudgets budgets{limits};
  const std::uint32_t normal = budgets[TimeBudgets::NORMAL];
  const std::uint32_t extended = budgets[TimeBudgets::EXTENDED];
  const std::uint32_t panic = budgets[TimeBudgets::PANIC];
  SearchClock clock;
};

TEST_F(SearchClockStates, PanicsWhenTheScoreDrops) {
  EXPECT_EQ(limitAfter(40, 25, 3), panic);
  EXPECT_EQ(limitAfter(40, 30, 3), normal);
  EXPECT_EQ(limitAfter(40, 29, 3), panic);
  EXPECT_EQ(limitAfter(40, 25, 2), normal);
  EXPECT_EQ(limitAfter(150, 120, 3), normal);
  EXPECT_EQ(limitAfter(0, -99, 3), panic);
  EXPECT_EQ(limitAfter(0, -100, 3), normal);
  clock.iterationDone(0);
  EXPECT_EQ(clock.limit(), normal);
}

TEST_F(SearchClockStates, ExtendsWhileAFailHighIsOpen) {
  clock.failHigh();  // no iteration has begun
  EXPECT_EQ(clock.limit(), normal);
  clock.setIteration(1);
  clock.failHigh();
  EXPECT_EQ(clock.limit(), extended);
  clock.resolved();
  EXPECT_EQ(clock.limit(), normal);
  EXPECT_EQ(limitAfter(40, 25, 3), panic);
  clock.failHigh();
  clock.resolved();
  EXPECT_EQ(clock.limit(), panic);
}

TEST_F(SearchClockStates, NeverExpiresWhileInfinite) {
  clock.start({.moveTime = 0, .infinite = true});
  while (clock.elapsed() < 2) {
  }
  EXPECT_FALSE(clock.isTimeUp());
  EXPECT_FALSE(clock.iterationTimeout());
  clock.ponderhit({.moveTime = 1000000});
  EXPECT_FALSE(clock.isTimeUp());
  clock.ponderhit({.moveTime = 0});
  EXPECT_TRUE(clock.isTimeUp());
  EXPECT_TRUE(clock.iterationTimeout());
  clock.setIteration(1);
  clock.failHigh();
  EXPECT_FALSE(clock.iterationTimeout());
}

}  // namespace
}  // namespace ombrin
