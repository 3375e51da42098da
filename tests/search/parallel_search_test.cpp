#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "search/move_picker.h"
#include "search/search_fixture.h"
#include "search/split_node.h"
#include "search/workers.h"

namespace ombrin {
namespace {

TEST(WorkerThreadsTest, AreMadeOnceAndParked) {
  TestEngine engine;
  const struct {
    int wanted;
    int used;
    const char* log;
  } cases[] = {
      {12, 8,
       "starting worker1...\nstarting worker2...\nstarting worker3...\nstarting worker4...\n"
       "starting worker5...\nstarting worker6...\nstarting worker7...\n"
       "started 7 new worker threads\n"},
      {2, 2, "started 0 new worker threads\nput 6 threads to sleep\n"},
      {0, 1, "started 0 new worker threads\nput 7 threads to sleep\n"},
      {4, 4, "started 0 new worker threads\nput 4 threads to sleep\n"},
  };
  const auto board = boardOf(MIDDLEGAMES[0]);
  for (const auto& [wanted, used, text] : cases) {
    {
      LogCapture log;
      engine.search.setThreads(wanted);
      EXPECT_EQ(log.text(), text) << wanted;
    }
    EXPECT_EQ(engine.search.threadCount(), used);
    EXPECT_TRUE(engine.searchTo(6, *board).bestMove);
  }
}

// What several threads find agrees with what one finds, as far as that is not a matter of timing.
TEST(ParallelSearchTest, AgreesWithOneThread) {
  TestEngine one;
  const std::vector<std::string> quiet = {
      "4k3/pp3ppp/8/8/8/8/PP3PPP/4K3 w - -",
      "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq -",
      "8/5pk1/6p1/3p4/3P4/6P1/5PK1/8 w - -", "r4rk1/ppp2ppp/8/8/8/8/PPP2PPP/2KRR3 b - -"};
  TestEngine several(4);
  for (const std::string& fen : quiet) {
    const auto board = boardOf(fen);
    const int expected = one.searchTo(7, *board).score.value();
    EXPECT_NEAR(several.searchTo(7, *board).score.value(), expected, 40) << fen;
  }
}

// Searches with eight threads, each stopped after a while: none hangs, no thread and no split node
// is lost, and the last search still splits.
TEST(ParallelSearchTest, SurvivesManyStops) {
  TestEngine engine(8);
  SearchObserver observer;
  std::mt19937 random(11);
  for (int i = 0; i < 200; ++i) {
    const auto board = boardOf(MIDDLEGAMES[i % MIDDLEGAMES.size()]);
    engine.search.start(*board, {}, observer);
    const std::uint64_t nodes = random() % 3 == 0 ? 0 : random() % 4000;
    while (engine.search.nodes() < nodes) std::this_thread::yield();
    engine.search.stopAndWait();
    ASSERT_TRUE(engine.search.report().bestMove);
  }
  LogCapture log;
  engine.searchTo(8, *boardOf(MIDDLEGAMES[0]));
  EXPECT_FALSE(log.has("splits=0 "));
  EXPECT_TRUE(log.has("\nslave7 :"));
}

// An idle thread that has no processor to find out with what it has been assigned to: whoever split
// does not wait for it.
TEST(SplitNodeTest, GoesOnWithoutThreadsThatNeverCame) {
  TestThread test;
  SearchState& state = test.state;
  SearchThread& owner = test.thread;
  SearchThread& idle = *state.threads[1];
  state.threadCount = 2;
  state.idleCount = 1;
  idle.idle = idle.isWaiting = true;
  state.clearStop();

  ASSERT_TRUE(setFen(owner.board, MIDDLEGAMES[0]));
  MovePicker picker = MovePicker::main(owner, 1, NULL_MOVE, NULL_MOVE);
  SplitNode* const node = trySplit(owner);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(idle.splitNode.load(), node);
  node->terms.beta = 100;
  node->search = [](SearchThread&, SplitNode& shared) {
    int number = 0;
    while (shared.take(number)) shared.best = number;
  };
  const Verdict verdict = searchSplit(owner, *node, {}, picker.next(), picker);
  EXPECT_GT(verdict.best, 20);
  EXPECT_EQ(idle.splitNode.load(), nullptr);
  EXPECT_EQ(state.idleCount, 1);
  EXPECT_EQ(owner.splitNode.load(), nullptr);
  EXPECT_EQ(owner.splitNodesInUse, 0);

  // Nothing has become of the one that was taken back: it can be had again.
  EXPECT_NE(trySplit(owner), nullptr);
}

}  // namespace
}  // namespace ombrin
