#include "search/search_controller.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "platform/event.h"
#include "platform/tick.h"
#include "search/search_fixture.h"

namespace ombrin {
namespace {

// Counts what it hears, and does as it is told when a search ends.
struct Listener : SearchObserver {
  void finished(int depth, Score score, Move bestMove) override {
    lastDepth = depth;
    lastScore = score;
    best = bestMove;
    ++ends;
    if (atEnd) atEnd();
    ended.set();
  }
  void reportIteration(int, Score, Move) override { iterating.set(); }
  void reportCurrentMove(int depth, int moveNumber, Move) override {
    inOrder = inOrder && (moveNumber == 0 || (depth == lastDepth && moveNumber == lastMove + 1));
    lastDepth = depth;
    lastMove = moveNumber;
  }

  std::function<void()> atEnd;
  std::atomic<int> ends{0};
  std::atomic<int> lastDepth{0};
  int lastMove = 0;
  bool inOrder = true;
  Score lastScore;
  Move best;
  Event iterating;
  Event ended;
};

class SearchControllerTest : public testing::Test {
 protected:
  SearchControllerTest() { engine.search.setListener(&listener); }
  ~SearchControllerTest() override { engine.search.stopAndWait(); }

  // As soon as the search has ended, whoever ends it.
  void waitForEnd() {
    listener.ended.wait();
    listener.ended.reset();
  }

  Listener listener;
  TestEngine engine;
  std::unique_ptr<Board> board = boardOf(MIDDLEGAMES[1]);
};

TEST_F(SearchControllerTest, SearchesUntilItIsStopped) {
  for (int i = 0; i < 50; ++i) {
    engine.search.start(*board, true);
    if (i % 2 == 0) listener.iterating.wait();
    engine.search.stopAndWait();
    EXPECT_TRUE(engine.search.isIdle());
    EXPECT_EQ(listener.ends, i + 1);
    EXPECT_TRUE(listener.best);
    listener.iterating.reset();
  }
  engine.search.stopAndWait();  // nothing to stop
  EXPECT_EQ(listener.ends, 50);
}

TEST_F(SearchControllerTest, StopsWithinAMoment) {
  for (int i = 0; i < 20; ++i) {
    engine.search.start(*board, true);
    listener.iterating.wait();
    const std::uint64_t before = tickCount();
    engine.search.stopAndWait();
    // Generous for a machine that is busy otherwise; a lost stop would never return.
    EXPECT_LT(tickCount() - before, 500U);
    listener.iterating.reset();
  }
}

TEST_F(SearchControllerTest, NeverLosesAPonderhit) {
  engine.clock.setMoveTime(3);
  for (int i = 0; i < 100; ++i) {
    engine.clock.setInfinite(true);
    engine.search.start(*board, true);
    if (i % 3 == 0) listener.iterating.wait();
    engine.search.ponderhit();
    waitForEnd();
    listener.iterating.reset();
  }
}

TEST_F(SearchControllerTest, EndsAPonderedSingleReplyAtOnce) {
  const auto forced = boardOf("k7/8/8/8/8/8/1r6/K7 w - -");
  engine.clock.setMoveTime(600000);
  engine.search.start(*forced, true);
  while (listener.lastDepth <= 3) std::this_thread::yield();
  LogCapture log;
  engine.search.ponderhit();
  EXPECT_TRUE(engine.search.isIdle());
  EXPECT_TRUE(log.has("ponderhit & single move!\n"));
}

TEST_F(SearchControllerTest, KeepsToItsLimits) {
  engine.search.maxDepth = 1;
  engine.search.start(*board, false);
  EXPECT_EQ(listener.ends, 1);
  EXPECT_EQ(engine.search.depth(), 1);
  EXPECT_TRUE(listener.inOrder);

  engine.search.maxDepth = 0;
  engine.clock.nodeLimit = 20000;
  engine.search.start(*board, false);
  EXPECT_GE(engine.search.nodes(), 20000U);
  EXPECT_LT(engine.search.nodes(), 25000U);

  engine.clock.nodeLimit = 0;
  engine.clock.setInfinite(false);
  engine.clock.setMoveTime(30);
  engine.search.start(*board, false);
  EXPECT_GE(engine.clock.elapsed(), 30U);
  EXPECT_LT(engine.clock.elapsed(), 500U);
}

// A front-end that ponders begins the next search from within the end of the one before.
TEST_F(SearchControllerTest, SearchesOnFromTheEndOfASearch) {
  engine.search.maxDepth = 3;
  listener.atEnd = [this] {
    if (listener.ends < 20) engine.search.startNext(*board);
  };
  engine.search.start(*board, true);
  while (listener.ends < 20) waitForEnd();
  engine.search.stopAndWait();
  EXPECT_EQ(listener.ends, 20);
  EXPECT_EQ(listener.lastDepth, 3);
}

TEST_F(SearchControllerTest, StopsWhatBeginsWhileItWaits) {
  for (int i = 0; i < 200; ++i) {
    const int before = listener.ends;
    engine.search.maxDepth = 1;
    listener.atEnd = [this, before] {
      engine.search.maxDepth = 0;  // for ever
      if (listener.ends == before + 1) engine.search.startNext(*board);
    };
    engine.search.start(*board, true);
    if (i % 2 == 0) waitForEnd();
    engine.search.stopAndWait();
    EXPECT_EQ(listener.ends, before + 2);
  }
}

TEST_F(SearchControllerTest, SearchesACopyOfTheBoard) {
  engine.search.start(*board, true);
  listener.iterating.wait();
  ASSERT_TRUE(setFen(*board, "7k/8/8/8/8/8/8/7K w - -"));
  engine.search.stopAndWait();
  EXPECT_TRUE(listener.best);
}

TEST_F(SearchControllerTest, BootsOnce) {
  LogCapture log;
  engine.search.boot();
  EXPECT_EQ(log.text(), "already booted!\n");
}

TEST_F(SearchControllerTest, LogsNothingWhenItIsQuiet) {
  LogCapture log;
  engine.search.quiet = true;
  engine.searchTo(4, *board);
  EXPECT_EQ(log.text(), "");
  engine.search.quiet = false;
  engine.searchTo(4, *board);
  for (const char* part : {"eval=", "nodes  : i=", "\ninodes : pv=", "\ntt     : probes=",
                           "\norder  : 1stpv=", "\nkillers: ", "\nnull   : ", "\niid    : ",
                           "\nreduce :  tries=", "\nsmp    : splits=", "\nmaster :"}) {
    EXPECT_TRUE(log.has(part)) << part;
  }
}

// Without a thread of its own a search runs on the caller's.
TEST(SearchControllerBoot, SearchesWithoutIt) {
  Silence silence;
  Tt tt(256);
  Bitbases bitbases;
  SearchClock clock;
  clock.setInfinite(true);
  SearchController search(tt, bitbases, clock);
  search.stopAndWait();
  search.maxDepth = 3;
  search.start(*boardOf(MIDDLEGAMES[0]), true);
  EXPECT_TRUE(search.isIdle());
  EXPECT_EQ(search.depth(), 3);
}

}  // namespace
}  // namespace ombrin
