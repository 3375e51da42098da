// Single nodes of the main search and of quiescence.

#include "search/node.h"

#include <gtest/gtest.h>

#include <cmath>

#include "board/move_generation.h"
#include "search/alpha_beta.h"
#include "search/search_fixture.h"
#include "search/selectivity.h"

namespace ombrin {
namespace {

class NodeTest : public testing::Test, protected TestThread {
 protected:
  // Sets up and plays; the last move as made.
  Move setUp(const std::string& fen, const std::vector<std::string>& moves = {}) {
    EXPECT_TRUE(setFen(board, fen));
    tt.clear();
    if (moves.empty()) return board.lastMove();
    return play(board, moves);
  }
};

TEST_F(NodeTest, CountsRepetitionsByDistanceFromTheRoot) {
  const std::vector<std::string> shuffle = {"g1f3", "g8f6", "f3g1", "f6g8"};
  setUp(std::string(START_FEN), shuffle);
  EXPECT_FALSE(isDraw(board, 3));
  EXPECT_TRUE(isDraw(board, 4));
  play(board, shuffle);
  EXPECT_TRUE(isDraw(board, 3));
  EXPECT_EQ(alphaBeta(thread, 3, 300, 301, 3, board.lastMove(), CUT_NODE), 0);
  play(board, {"e2e4"});
  EXPECT_FALSE(isDraw(board, 9));

  // A null move is a wall.
  setUp(std::string(START_FEN), {"g1f3", "g8f6"});
  makeNullMove(board);
  play(board, {"f6g8"});
  makeNullMove(board);
  EXPECT_FALSE(isDraw(board, 9));
}

TEST_F(NodeTest, KnowsDeadPositions) {
  const struct {
    const char* fen;
    bool draw;
  } cases[] = {{"4k3/8/8/8/8/8/8/4K3 w - -", true},        {"4k3/8/8/8/8/8/8/4KB2 w - -", true},
               {"4k3/8/8/8/8/8/8/3NKB2 w - -", false},     {"4kn2/8/8/8/8/8/8/4KB2 w - -", false},
               {"4k3/8/8/8/8/8/4P3/4K3 w - -", false},     {"4k3/8/8/8/8/8/8/R3K3 w - -", false},
               {"4k3/8/8/8/8/8/8/R3K3 w - - 99 80", false}};
  for (const auto& [fen, draw] : cases) {
    setUp(fen);
    EXPECT_EQ(isDraw(board, 1), draw) << fen;
  }
}

TEST_F(NodeTest, TakesTheDrawByMovingBack) {
  const std::vector<std::string> moves = {"e2e4", "e7e5", "g1f3", "b8c6", "f3g1"};
  const Move last = setUp(std::string(START_FEN), moves);
  // Nf3-g1 went back; Black can do the same with the knight from c6.
  EXPECT_EQ(moveBack(board), Move(Square::at(2, 5), Square::at(1, 7)));
  EXPECT_EQ(alphaBeta(thread, 5, -50, 0, 3, last, CUT_NODE), 0);
  EXPECT_EQ(thread.pv[5][0], moveBack(board));
  EXPECT_EQ(quiesce(thread, 5, -50, 0, QUIESCENCE_BUDGET, last), 0);

  setUp(std::string(START_FEN), {"e2e4", "e7e5", "g1f3", "b8c6", "f3d4"});
  EXPECT_FALSE(moveBack(board));
  // The rook that came back stands between the squares of Black's move.
  setUp("4k3/8/8/8/q7/2R5/8/4K3 w - -", {"c3c4", "a4a3", "c4c3"});
  EXPECT_TRUE(moveBack(board));
  setUp("4k3/8/8/q7/2R5/8/8/5K2 w - -", {"c4c3", "a5a4", "c3c4"});
  EXPECT_TRUE(moveBack(board));
  setUp("4k3/8/8/8/q1R5/8/8/5K2 w - -", {"c4c3", "a4e4", "c3c4"});
  EXPECT_FALSE(moveBack(board));
}

TEST_F(NodeTest, PrunesByMateDistance) {
  const struct {
    bool inCheck;
    int alpha, beta;
    int score;  // 1 when the node goes on
    int alphaAfter;
  } cases[] = {
      {false, 29994, 29995, 29994, 29994},
      {false, 29993, 29994, 1, 29993},
      {false, -29994, -29993, -29993, -29994},
      {true, -29994, -29993, 1, -29994},
      {true, -29996, -29995, -29995, -29996},
      {true, -29999, -29994, 1, -29995},
      {false, 10, 11, 1, 10},
  };
  for (const auto& test : cases) {
    Score alpha = test.alpha;
    const auto score = pruneByMateDistance(5, test.inCheck, alpha, test.beta);
    EXPECT_EQ(score.value_or(1), test.score) << test.alpha;
    EXPECT_EQ(alpha, test.alphaAfter) << test.alpha;
  }
}

TEST_F(NodeTest, BelievesTheTableWhereItMay) {
  const struct {
    Bound bound;
    int score, depth;
    bool expected;
  } cases[] = {
      {TT_EXACT, 7, 5, true},     {TT_EXACT, 7, 4, false},    {TT_LOWER, 11, 5, true},
      {TT_LOWER, 10, 5, false},   {TT_UPPER, 10, 5, true},    {TT_UPPER, 11, 5, false},
      {TT_LOWER, 11, 4, false},   {TT_LOWER, 3000, 1, true},  {TT_EXACT, 3000, 1, true},
      {TT_UPPER, 3000, 1, false}, {TT_UPPER, -3000, 1, true}, {TT_LOWER, -3000, 1, false},
      {TT_EXACT, -3000, 1, true},
  };
  for (const auto& [bound, score, depth, expected] : cases) {
    const TtEntry entry{NULL_MOVE, score, depth, bound};
    EXPECT_EQ(decides(entry, score, 5, 10, 11), expected) << bound << ' ' << score << ' ' << depth;
  }
}

TEST_F(NodeTest, SeesTheEndInQuiescence) {
  const auto score = [this](const std::string& fen, Score alpha, Score beta) {
    const Move last = setUp(fen);
    return quiesce(thread, 4, alpha, beta, QUIESCENCE_BUDGET, last);
  };
  EXPECT_EQ(score("8/8/8/8/8/5k2/5p2/5K2 w - -", -MATE, MATE), DRAW);
  EXPECT_EQ(score("k7/8/8/p1p5/P1P5/8/5q2/7K w - -", -MATE, MATE), DRAW);
  EXPECT_EQ(score("6k1/8/8/8/8/8/5PPP/3r2K1 w - -", -MATE, MATE), Score::matedIn(4));
  EXPECT_EQ(score("6k1/5ppp/8/8/8/8/5PPP/6K1 w - -", -29500, -29400), -MATE_BOUND);
}

// In check, with nothing but a quiet king move: hopeless when the static score is too far below.
TEST_F(NodeTest, DropsQuietEvasionsFarBelowAlpha) {
  const std::string fen = "6k1/8/8/8/8/8/5PP1/3r2K1 w - -";
  Move last = setUp(fen);
  const Score stand = thread.evaluator.evaluate();
  EXPECT_EQ(quiesce(thread, 4, stand + 60, stand + 61, QUIESCENCE_BUDGET, last), stand);
  last = setUp(fen);
  EXPECT_NE(quiesce(thread, 4, stand + 40, stand + 41, QUIESCENCE_BUDGET, last), stand);
}

TEST_F(NodeTest, ReturnsAtOnceWhenStopped) {
  const Move last = setUp(MIDDLEGAMES[0]);
  thread.stop = true;
  EXPECT_EQ(alphaBeta(thread, 1, 100, 200, 5, last, PV_NODE), 0);
  EXPECT_EQ(quiesce(thread, 1, 100, 200, 4, last), 0);
  EXPECT_EQ(thread.counters.nodes(), 0U);
}

TEST_F(NodeTest, ExtendsRecapturesAndPawnEndings) {
  const struct {
    const char* what;
    const char* fen;
    const char* before;  // led to the node
    const char* move;    // is judged
    int newDepth;
    NodeType type;
    int expected;
  } cases[] = {
      {"recapture", "4k3/2p5/3n4/8/8/3Q4/8/3RK3 w - -", "d3d6", "c7d6", 3, PV_NODE, 1},
      {"near the horizon", "4k3/2p5/3n4/8/8/3Q4/8/3RK3 w - -", "d3d6", "c7d6", 2, PV_NODE, 0},
      {"unbalanced", "4k3/2p5/3n4/8/8/3Q4/8/3RK2R w - -", "d3d6", "c7d6", 3, CUT_NODE, 0},
      {"even", "4k3/2p5/3n4/8/8/3N4/8/4K3 w - -", "d3f4", "d6f5", 3, CUT_NODE, 0},
      {"takes the last knight", "8/2p5/4k3/3N4/8/8/3P4/4K3 w - -", "d2d3", "e6d5", 1, CUT_NODE, 7},
  };
  for (const auto& test : cases) {
    NodeTerms terms;
    terms.lastMove = setUp(test.fen, {test.before});
    terms.depth = test.newDepth + 1;
    terms.newDepth = test.newDepth;
    const Move made = play(board, {test.move});
    EXPECT_EQ(extension(board, terms, test.type, made, 7), test.expected) << test.what;
    terms.newDepth = terms.depth;
    EXPECT_EQ(extension(board, terms, test.type, made, 7), 0) << test.what << ", extended already";
  }
}

TEST_F(NodeTest, FindsLateMovesThatAreTooActiveToReduce) {
  const struct {
    const char* what;
    const char* fen;
    const char* move;
    int threatSquare;
    bool expected;
  } cases[] = {
      {"a quiet knight", "4k3/8/8/8/8/2N5/8/4K3 w - -", "c3b5", 8, false},
      {"a knight that attacks a rook", "r3k3/8/8/8/8/2N5/8/4K3 w - -", "c3b5", 8, false},
      {"a knight that forks", "4k3/2q5/8/8/8/2N5/8/4K3 w - -", "c3b5", 8, true},
      {"a knight that would be taken", "4k3/2q5/p7/8/8/2N5/8/4K3 w - -", "c3b5", 8, false},
      {"a pawn lever", "4k3/8/8/2p5/8/3P4/8/4K3 w - -", "d3d4", 8, false},
      {"a safe pawn lever", "4k3/8/3p4/8/4P3/8/8/4K3 w - -", "e4e5", 8, false},
      {"a pawn that attacks a knight", "4k3/8/3n4/8/4P3/3P4/8/4K3 w - -", "e4e5", 8, true},
      {"a rook along its own line", "3qk3/8/8/8/8/3R4/8/4K3 w - -", "d3d4", 8, false},
      {"a rook to the queen's file", "1q2k3/8/8/1n6/8/3R4/8/4K3 w - -", "d3b3", 8, false},
      {"a bishop to the rook's diagonal", "4k3/8/5r2/8/8/8/3B4/4K3 w - -", "d2c3", 8, true},
      {"out of the threat's way", "4k3/8/8/8/8/2N5/8/4K3 w - -", "c3b5", 0x22, true},
  };
  for (const auto& test : cases) {
    setUp(test.fen);
    NodeTerms terms;
    terms.threatSquare = Square(test.threatSquare);
    const Move move = parseMove(board, test.move).identity();
    EXPECT_EQ(isActive(board, terms, move), test.expected) << test.what;
  }
  setUp("4k3/8/8/2p5/8/3P4/8/4K3 w - -");
  NodeTerms terms;
  terms.passedFiles = 1 << 3;
  EXPECT_TRUE(isActive(board, terms, parseMove(board, "d3d4").identity()));
}

TEST_F(NodeTest, JudgesFutility) {
  const struct {
    const char* what;
    const char* fen;
    const char* move;
    int alpha;  // the futility value is 0
    bool expected;
  } cases[] = {
      {"a quiet move", "4k3/8/8/8/8/2N5/8/4K3 w - -", "c3b5", 1, true},
      {"a quiet move that may do", "4k3/8/8/8/8/2N5/8/4K3 w - -", "c3b5", 0, false},
      {"a capture", "4k3/8/8/1r6/8/2N5/8/4K3 w - -", "c3b5", 500, false},
      {"a capture that is not enough", "4k3/8/8/1r6/8/2N5/8/4K3 w - -", "c3b5", 501, true},
      {"a check", "4k3/8/8/8/8/8/3Q4/K7 w - -", "d2e2", 500, false},
      {"a pawn on the seventh", "8/8/3P4/8/8/8/8/K6k w - -", "d6d7", 500, false},
      {"a pawn on the sixth", "8/8/8/3P4/8/8/8/K6k w - -", "d5d6", 500, true},
      {"a promotion", "8/3P4/8/8/8/8/8/K6k w - -", "d7d8", 5000, false},
  };
  for (const auto& test : cases) {
    setUp(test.fen);
    NodeTerms terms;
    terms.futility = 0;
    Move move = parseMove(board, test.move).identity();
    EXPECT_EQ(isFutile(board, terms, test.alpha, move), test.expected) << test.what;
  }
}

}  // namespace
}  // namespace ombrin
