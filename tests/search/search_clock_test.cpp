#include "search/search_clock.h"

#include <gtest/gtest.h>

#include <array>

namespace ombrin {
namespace {

using Budgets = std::array<std::uint32_t, 5>;

Budgets budgets(const SearchClock& clock) {
  return {clock.budget(SearchClock::EASY), clock.budget(SearchClock::ITERATION),
          clock.budget(SearchClock::NORMAL), clock.budget(SearchClock::EXTENDED),
          clock.budget(SearchClock::PANIC)};
}

TEST(SearchClockTest, SharesTheRemainingTimeOut) {
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
    SearchClock clock;
    clock.timeGap = test.gap;
    clock.movesOutOfBook = test.outOfBook;
    clock.canPonder = test.ponder;
    clock.setTimeControl(test.movesToGo, test.remaining, test.increment);
    EXPECT_EQ(budgets(clock), test.expected) << test.what;
    clock.setRemaining(test.remaining);
    EXPECT_EQ(budgets(clock), test.expected) << test.what << ", set again";
  }
}

TEST(SearchClockTest, GivesEveryMoveTheSameTimeWhenToldSo) {
  SearchClock clock;
  EXPECT_EQ(clock.nominal(), 5000U);
  clock.timeGap = 3000;
  clock.setMoveTime(1234);
  EXPECT_EQ(budgets(clock), (Budgets{1234, 1234, 1234, 1234, 1234}));
  EXPECT_EQ(clock.timeGap, 0);
  clock.setDefaults();
  EXPECT_EQ(budgets(clock), (Budgets{5000, 5000, 5000, 5000, 5000}));
}

// Budgets that are over or far away tell which of them is the current limit.
class SearchClockStates : public testing::Test {
 protected:
  // Normal time is up at once, extended time is not.
  void SetUp() override {
    clock.setTimeControl(1, 1000000, 0);
    ASSERT_GT(clock.budget(SearchClock::NORMAL), 100000U);
    clock.reset();
  }
  std::uint32_t limitAfter(Score before, Score now, int iteration) {
    clock.reset();
    clock.setIteration(iteration - 1);
    clock.iterationDone(before);
    clock.setIteration(iteration);
    clock.firstScore(now);
    return clock.limit();
  }
  SearchClock clock;
};

TEST_F(SearchClockStates, PanicsWhenTheScoreDrops) {
  const std::uint32_t normal = clock.budget(SearchClock::NORMAL);
  const std::uint32_t panic = clock.budget(SearchClock::PANIC);
  ASSERT_NE(normal, panic);
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
  const std::uint32_t normal = clock.budget(SearchClock::NORMAL);
  const std::uint32_t extended = clock.budget(SearchClock::EXTENDED);
  clock.failHigh();  // no iteration has begun
  EXPECT_EQ(clock.limit(), normal);
  clock.setIteration(1);
  clock.failHigh();
  EXPECT_EQ(clock.limit(), extended);
  clock.resolved();
  EXPECT_EQ(clock.limit(), normal);
  EXPECT_EQ(limitAfter(40, 25, 3), clock.budget(SearchClock::PANIC));
  clock.failHigh();
  clock.resolved();
  EXPECT_EQ(clock.limit(), clock.budget(SearchClock::PANIC));
}

TEST_F(SearchClockStates, NeverExpiresWhileInfinite) {
  clock.setMoveTime(0);
  clock.setInfinite(true);
  clock.reset();
  while (clock.elapsed() < 2) {
  }
  EXPECT_FALSE(clock.isTimeUp());
  EXPECT_FALSE(clock.iterationTimeout());
  clock.ponderhit();
  EXPECT_TRUE(clock.isTimeUp());
  EXPECT_TRUE(clock.iterationTimeout());
  clock.setIteration(1);
  clock.failHigh();
  EXPECT_FALSE(clock.iterationTimeout());
}

}  // namespace
}  // namespace ombrin
