#include "search/search_controller.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "platform/event.h"
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
  void reportIteration(int, Score, Move) override {
    ++reports;
    iterating.set();
  }
  void reportCurrentMove(int depth, int moveNumber, Move) override {
    ++reports;
    inOrder = inOrder && (moveNumber == 0 || (depth == lastDepth && moveNumber == lastMove + 1));
    lastDepth = depth;
    lastMove = moveNumber;
  }

  std::function<void()> atEnd;
  std::atomic<int> ends{0};
  std::atomic<int> lastDepth{0};
  int reports = 0;
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
  for (int i = 0; i < 20; ++i) {
    const auto mine = boardOf(MIDDLEGAMES[1]);
    engine.search.start(*mine, true);
    ASSERT_TRUE(setFen(*mine, "7k/8/8/8/8/8/8/7K w - -"));  // the search has a copy
    if (i % 2 == 0) listener.iterating.wait();
    engine.search.stopAndWait();
    EXPECT_TRUE(engine.search.isIdle());
    EXPECT_EQ(listener.ends, i + 1);
    EXPECT_TRUE(listener.best);
    listener.iterating.reset();
  }
  engine.search.stopAndWait();  // nothing to stop
  EXPECT_EQ(listener.ends, 20);
}

TEST_F(SearchControllerTest, NeverLosesAPonderhit) {
  engine.clock.setMoveTime(3);
  for (int i = 0; i < 30; ++i) {
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

TEST_F(SearchControllerTest, EndsAtOnceWithoutALegalMove) {
  const struct {
    const char* fen;
    int score;
  } cases[] = {{"7k/5Q2/6K1/8/8/8/8/8 b - -", 0}, {"7k/6Q1/6K1/8/8/8/8/8 b - -", -30000}};
  for (const auto& [fen, score] : cases) {
    engine.searchTo(5, *boardOf(fen));
    EXPECT_EQ(listener.lastDepth, 0);
    EXPECT_EQ(listener.lastScore, score);
    EXPECT_EQ(listener.best, NULL_MOVE);
  }
  EXPECT_EQ(listener.ends, 2);
  EXPECT_EQ(listener.reports, 0);
}

// Workers do not search on either.
TEST_F(SearchControllerTest, KeepsToItsLimits) {
  for (const int threads : {1, 4}) {
    engine.search.setThreads(threads);
    engine.searchTo(1, *board);
    EXPECT_EQ(engine.search.depth(), 1);
    EXPECT_TRUE(listener.inOrder);

    engine.clock.nodeLimit = 20000;
    engine.searchTo(0, *board);
    EXPECT_GE(engine.search.nodes(), 20000U);
    EXPECT_LT(engine.search.nodes(), threads == 1 ? 25000U : 200000U);

    engine.clock.nodeLimit = 0;
    engine.clock.setInfinite(false);
    engine.clock.setMoveTime(30);
    engine.searchTo(0, *board);
    EXPECT_GE(engine.clock.elapsed(), 30U);
    engine.clock.setInfinite(true);
  }
  EXPECT_EQ(listener.ends, 6);
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
  for (int i = 0; i < 50; ++i) {
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
TEST(SearchControllerBoot, StartsTheThreadsOnce) {
  UnbootedEngine engine;
  engine.search.stopAndWait();
  engine.search.maxDepth = 3;
  engine.search.start(*boardOf(MIDDLEGAMES[0]), true);
  EXPECT_TRUE(engine.search.isIdle());
  EXPECT_EQ(engine.search.depth(), 3);
  engine.search.setThreads(3);
  LogCapture log;
  engine.search.boot();
  engine.search.boot();
  EXPECT_EQ(log.text(),
            "starting main search thread...\nstarting worker1...\nstarting worker2...\n"
            "started 2 new worker threads\nalready booted!\n");
}

}  // namespace
}  // namespace ombrin
