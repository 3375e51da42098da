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
  void finished(const SearchReport& report) override {
    lastDepth = report.depth;
    lastScore = report.score;
    best = report.bestMove;
    ++ends;
    if (atEnd) atEnd();
    ended.set();
  }
  void reportBestLine(const SearchReport&) override {
    ++reports;
    iterating.set();
  }
  void reportCurrentMove(const RootMoveReport& report) override {
    ++reports;
    inOrder = inOrder &&
              (report.number == 0 || (report.depth == lastDepth && report.number == lastMove + 1));
    lastDepth = report.depth;
    lastMove = report.number;
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
  ~SearchControllerTest() override { engine.search.stopAndWait(); }

  void start(const SearchLimits& limits = {.infinite = true}) {
    engine.search.start(*board, limits, listener);
  }
  void startNext(const SearchLimits& limits = {}) {
    engine.search.startNext(*board, limits, listener);
  }
  SearchReport search(const SearchLimits& limits) {
    engine.search.search(*board, limits, listener);
    return engine.search.report();
  }
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
    engine.search.start(*mine, {}, listener);
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
  const SearchLimits limits{.moveTime = 3, .infinite = true};
  for (int i = 0; i < 30; ++i) {
    start(limits);
    if (i % 3 == 0) listener.iterating.wait();
    engine.search.ponderhit(limits);
    waitForEnd();
    listener.iterating.reset();
  }
}

TEST_F(SearchControllerTest, EndsAPonderedSingleReplyAtOnce) {
  board = boardOf("k7/8/8/8/8/8/1r6/K7 w - -");
  start();
  while (listener.lastDepth <= 3) std::this_thread::yield();
  LogCapture log;
  engine.search.ponderhit({});
  EXPECT_TRUE(engine.search.isIdle());
  EXPECT_TRUE(log.has("ponderhit & single move!\n"));
}

TEST_F(SearchControllerTest, EndsAtOnceWithoutALegalMove) {
  const struct {
    const char* fen;
    Score score;
  } cases[] = {{"7k/5Q2/6K1/8/8/8/8/8 b - -", DRAW},
               {"7k/6Q1/6K1/8/8/8/8/8 b - -", Score::matedIn(0)}};
  for (const auto& [fen, score] : cases) {
    board = boardOf(fen);
    search({.depth = 5});
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
    EXPECT_EQ(search({.depth = 1}).depth, 1);
    EXPECT_TRUE(listener.inOrder);
    const std::uint64_t nodes = search({.nodes = 20000}).nodes;
    EXPECT_GE(nodes, 20000U);
    EXPECT_LT(nodes, threads == 1 ? 25000U : 200000U);
    EXPECT_GE(search({.moveTime = 30}).time, 30U);
  }
  EXPECT_EQ(listener.ends, 6);
}

// A front-end that ponders begins the next search from within the end of the one before.
TEST_F(SearchControllerTest, SearchesOnFromTheEndOfASearch) {
  listener.atEnd = [this] {
    if (listener.ends < 20) startNext({.depth = 3});
  };
  start({.depth = 3});
  while (listener.ends < 20) waitForEnd();
  engine.search.stopAndWait();
  EXPECT_EQ(listener.ends, 20);
  EXPECT_EQ(listener.lastDepth, 3);
}

TEST_F(SearchControllerTest, StopsWhatBeginsWhileItWaits) {
  for (int i = 0; i < 50; ++i) {
    const int before = listener.ends;
    listener.atEnd = [this, before] {
      if (listener.ends == before + 1) startNext();  // for ever
    };
    start({.depth = 1});
    if (i % 2 == 0) waitForEnd();
    engine.search.stopAndWait();
    EXPECT_EQ(listener.ends, before + 2);
  }
}

TEST_F(SearchControllerTest, LogsNothingWhenItIsQuiet) {
  LogCapture log;
  search({.depth = 4});
  for (const char* part : {"eval=", "nodes  : i=", "\ninodes : pv=", "\ntt     : probes=",
                           "\norder  : 1stpv=", "\nkillers: ", "\nnull   : ", "\niid    : ",
                           "\nreduce :  tries=", "\nsmp    : splits=", "\nmaster :"}) {
    EXPECT_TRUE(log.has(part)) << part;
  }
  const std::string before = log.text();
  engine.search.silence();
  search({.depth = 4});
  EXPECT_EQ(log.text(), before);
}

// Without a thread of its own a search runs on the caller's.
TEST(SearchControllerBoot, StartsTheThreadsOnce) {
  UnbootedEngine engine;
  engine.search.stopAndWait();
  SearchObserver observer;
  engine.search.start(*boardOf(MIDDLEGAMES[0]), {.depth = 3}, observer);
  EXPECT_TRUE(engine.search.isIdle());
  EXPECT_EQ(engine.search.report().depth, 3);
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
