// What searches find, and what they leave behind.

#include <gtest/gtest.h>

#include <span>

#include "board/move_generation.h"
#include "board/self_check.h"
#include "search/root_search.h"
#include "search/search_fixture.h"
#include "search/statistics.h"

namespace ombrin {
namespace {

// Every move of the line can be played, one after the other.
void expectLegal(const Board& root, std::span<const Move> line) {
  Board board;
  board.copyFrom(root);
  Move lastMove = board.lastMove();
  for (const Move move : line) {
    ASSERT_TRUE(isMove(board, move, lastMove)) << moveToText(move) << " in " << writeFen(board);
    lastMove = makeMove(board, move);
    ASSERT_TRUE(lastMove) << moveToText(move);
  }
}

void expectPlayableLine(const SearchReport& report, const Board& root) {
  ASSERT_FALSE(report.line.moves().empty());
  EXPECT_EQ(report.line[0], report.bestMove);
  expectLegal(root, report.line.moves());
}

struct MateCase {
  const char* fen;
  int moves;  // until the mate; below 0 when the side to move is mated
};

// Distances proven by exhaustive search.
constexpr MateCase MATES[] = {
    {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", 1},
    {"r1bqkbnr/pppp1ppp/2n5/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq -", 1},
    {"7k/P7/6K1/8/8/8/8/8 w - -", 1},
    {"kbK5/pp6/1P6/8/8/8/8/R7 w - -", 2},
    {"6k1/pp4p1/2p5/2bp4/8/P5Pb/1P3rrP/2BRRN1K b - -", 2},
    {"4k3/8/8/8/8/8/R7/1R2K3 w - -", 2},
    {"r5rk/5p1p/5R2/4B3/8/8/7P/7K w - -", 3},
    {"1r4k1/5Npp/8/8/2Q5/8/6PP/6K1 w - -", 3},
    {"r1b1kb1r/pppp1ppp/5q2/4n3/3KP3/2N3PN/PPP4P/R1BQ1B1R b kq -", 3},
    {"r3k2r/ppp2Npp/1b5n/4p2b/2B1P2q/BQP2P2/P5PP/RN5K w kq -", 3},
    {"r2n1rk1/1ppb2pp/1p1p4/3Ppq1n/2B3P1/2P4P/PP1N1P1K/R2Q1RN1 b - -", 3},
    {"7k/5K2/6P1/8/8/8/8/8 w - -", 3},
    {"k7/8/1K6/3N4/8/3B4/8/8 w - -", 4},
    {"6k1/8/8/8/4K3/8/8/1Q6 w - -", 4},
    {"8/8/6k1/8/8/8/1R6/R5K1 w - -", 4},
    {"8/8/5k2/8/8/8/1R6/R5K1 w - -", 5},
    {"8/8/8/8/8/5k2/7q/5K2 w - -", -1},
    {"k7/8/2K5/8/8/8/8/6R1 b - -", -2},
    {"6k1/8/4K3/8/8/8/8/7Q b - -", -3},
};

void expectMates(int threads, std::span<const MateCase> mates) {
  TestEngine engine(threads);
  for (const auto& [fen, moves] : mates) {
    const auto board = boardOf(fen);
    engine.tt.clear();
    const SearchReport report = engine.searchTo(20, *board, true);
    EXPECT_EQ(report.score, moves > 0 ? Score::mateIn(2 * moves - 1) : Score::matedIn(-2 * moves))
        << fen << ", " << threads << " threads";
    expectPlayableLine(report, *board);
  }
}

TEST(SearchTest, FindsMatesWithTheirDistance) {
  expectMates(1, MATES);
  expectMates(2, std::span(MATES).subspan(5, 5));
}

TEST(SearchTest, FindsTheDraw) {
  const struct {
    const char* what;
    const char* fen;
    int depth;
  } cases[] = {
      {"bishop against bishop", "8/8/3k4/8/8/2KB4/8/5b2 w - -", 4},
      {"a pawn before which the king stands", "8/8/8/8/5k2/5p2/8/5K2 w - -", 20},
      {"a rook's pawn against a king in the corner", "k7/8/1K6/P7/8/8/8/8 w - -", 8},
  };
  for (const auto& [what, fen, depth] : cases) {
    TestEngine engine;
    EXPECT_EQ(engine.searchTo(depth, *boardOf(fen)).score, 0) << what;
  }
}

// With ninety-nine plies played, only a pawn move keeps the win.
TEST(SearchTest, KnowsTheFiftyMoveRule) {
  TestEngine engine;
  const auto board = boardOf("7k/8/8/8/8/8/P7/KQ6 w - -");
  for (int i = 0; i < 24; ++i) play(*board, {"b1b2", "h8h7", "b2b1", "h7h8"});
  play(*board, {"b1b2", "h8h7", "b2b1"});
  play(*board, {"h7g8"});
  const SearchReport report = engine.searchTo(3, *board);
  EXPECT_GT(report.score, 500);
  EXPECT_EQ(board->at(report.bestMove.from()).type(), PAWN);
}

TEST(SearchTest, StopsEarlyWhenThereIsNothingToDecide) {
  const struct {
    const char* fen;
    const char* reason;
    int depth;
  } cases[] = {{"k7/8/8/8/8/8/1r6/K7 w - -", "single move\n", 2},
               {"r5rk/5p1p/5R2/4B3/8/8/7P/7K w - -", "(optimal)\n", 5}};
  for (const auto& [fen, reason, depth] : cases) {
    TestEngine engine;
    LogCapture log;
    EXPECT_LE(engine.searchTo(30, *boardOf(fen), true).depth, depth) << fen;
    EXPECT_TRUE(log.has(reason)) << fen;
  }
}

// An engine that has searched before and one that has not find the same in the same way.
TEST(SearchTest, IsDeterministic) {
  TestEngine used;
  for (const std::string& fen : MIDDLEGAMES) {
    const auto board = boardOf(fen);
    TestEngine fresh;
    used.tt.clear();
    const SearchReport report = used.searchTo(6, *board);
    const SearchReport other = fresh.searchTo(6, *board);
    EXPECT_EQ(report.score, other.score) << fen;
    EXPECT_EQ(report.nodes, other.nodes) << fen;
    EXPECT_EQ(report.bestMove, other.bestMove) << fen;
    expectPlayableLine(report, *board);
    EXPECT_EQ(report.ponderMove(), report.line[1]) << fen;
  }
}

TEST(SearchTest, LeavesItsBoardAsItWas) {
  TestThread test;
  Board& board = test.board;
  for (const std::string& fen : MIDDLEGAMES) {
    ASSERT_TRUE(setFen(board, fen));
    const std::string before = writeFen(board);
    const auto squares = board.squares;
    const auto places = board.pieceSquare;
    test.state.maxDepth = 6;
    test.state.clearStop();
    iterate(test.state);
    EXPECT_EQ(writeFen(board), before);
    EXPECT_EQ(board.squares, squares) << fen;
    EXPECT_EQ(board.promotedCount, 0U);
    // A slot that a promoted piece has used counts as free again wherever the list ended before.
    EXPECT_EQ(board.pieceSquare, places) << fen;
    checkBoard(board, "after the search", NULL_MOVE);
  }
}

// A long game leaves the search its room.
TEST(SearchTest, SearchesAfterAThousandPlies) {
  TestEngine engine;
  const auto board = boardOf("6k1/8/8/3r4/8/8/4R3/6K1 w - -");
  for (int i = 0; i < 250; ++i) play(*board, {"e2f2", "d5c5", "f2e2", "c5d5"});
  EXPECT_EQ(board->gamePly(), 1000U);
  const SearchReport report = engine.searchTo(6, *board);
  EXPECT_EQ(report.score, 0);
  expectLegal(*board, report.line.moves());
}

TEST(StatisticsTest, WritesProgressLines) {
  TestThread test;
  const struct {
    int depth, seldepth;
    std::uint64_t milliseconds;
    std::uint64_t nodes;
    int score;
    const char* suffix;
    const char* expected;
  } cases[] = {
      {5, 9, 12, 99999, 17, "ok", "  [5/9]     0.012   99999       17  ok"},
      {12, 30, 59999, 100000, -3, "", " [12/30]   59.999      97k      -3  "},
      {12, 30, 59999, 102399999, -3, "", " [12/30]   59.999   99999k      -3  "},
      {12, 30, 59999, 102400000, -3, "", " [12/30]   59.999      97m      -3  "},
      {12, 30, 59999, 107374182400, -3, "", " [12/30]   59.999     100g      -3  "},
      {12, 30, 59999, 1ULL << 60, -3, "", " [12/30]   59.999 1048576t      -3  "},
      {120, 60, 3723000, 0, 28999, "x", "[120/60]  1:02:03       0    28999  x"},
      {8, 20, 0, 1, 29995, "", "  [8/20]    0.000       1       +3# "},
      {8, 20, 0, 1, -29996, "", "  [8/20]    0.000       1       -2# "},
  };
  for (const auto& line : cases) {
    test.state.depth = line.depth;
    test.thread.seldepth = line.seldepth;
    test.thread.counters = {};
    test.thread.counters.pnodes += line.nodes;
    EXPECT_EQ(progressLine(test.state, line.milliseconds, line.score, line.suffix), line.expected);
  }
}

}  // namespace
}  // namespace ombrin
