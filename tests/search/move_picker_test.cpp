#include "search/move_picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/move_generation.h"
#include "search/search_fixture.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

class MovePickerTest : public testing::Test, protected TestThread {
 protected:
  using Texts = std::vector<std::string>;
  static constexpr int PLY = 5;

  std::vector<Move> rest(MovePicker picker) {
    std::vector<Move> moves;
    while (const Move move = picker.next()) moves.push_back(move);
    return moves;
  }
  // The quiet moves and what comes behind them in a node of the main search.
  std::vector<Move> lateMoves(Move threat) {
    MovePicker picker = MovePicker::main(thread, PLY, NULL_MOVE, threat);
    std::vector<Move> moves;
    while (const Move move = picker.next()) {
      if (!picker.isCapture() && !picker.isKiller()) moves.push_back(move);
    }
    return moves;
  }
  // Of pseudo-legal moves, those that can be played, sorted.
  std::vector<std::uint32_t> playable(std::span<const Move> moves) {
    std::vector<std::uint32_t> words;
    const SavedState saved = board.save();
    for (const Move move : moves) {
      if (uncovers(board, board.kingSquare(board.side), move.from(), move.to())) continue;
      const Move made = makeMove(board, move);
      if (!made) continue;
      unmakeMove(board, made, saved);
      words.push_back(move.identity().word());
    }
    std::sort(words.begin(), words.end());
    return words;
  }
  Texts texts(const std::vector<Move>& moves) {
    Texts result;
    for (const Move move : moves) result.push_back(moveToText(move));
    return result;
  }
  void setUp(const std::string& fen) { ASSERT_TRUE(setFen(board, fen)); }
  Move read(const std::string& text) { return parseMove(board, text).identity(); }
};

// Whatever the killers, the hash move and the threat are, every legal move comes exactly once; only
// a king's step that is a killer comes again with the king's other steps.
TEST_F(MovePickerTest, HandsOutEveryLegalMoveOnce) {
  std::mt19937 random(7);
  forRandomPositions(2, 60, [&](const Board& position) {
    board.copyFrom(position);
    const Move lastMove = board.lastMove();
    const MoveList moves = pseudoLegalMoves(board, lastMove);
    const std::vector<std::uint32_t> expected = playable(legalMoves(board));
    if (expected.empty()) return;
    const auto anyOf = [&](const MoveList& list) {
      return list.empty() ? NULL_MOVE : list[random() % list.size()].identity();
    };

    std::vector<Move> handed;
    if (lastMove.isCheck()) {
      const MovePicker picker = MovePicker::evasions(thread, PLY, lastMove, anyOf(moves));
      EXPECT_EQ(picker.evasionCount(), static_cast<int>(moves.size()));
      handed = rest(picker);
    } else {
      const Move hashMove = random() % 2 == 0 ? anyOf(moves) : NULL_MOVE;
      for (Killers& killers : thread.killers) {
        const auto mayBeKiller = [&](Move move) {
          return move.isQuiet() && board.at(move.from()).type() != KING;
        };
        killers = {anyOf(moves), anyOf(moves)};
        if (killers.second == killers.first || !mayBeKiller(killers.second)) {
          killers.second = NULL_MOVE;
        }
        if (!mayBeKiller(killers.first)) killers.first = NULL_MOVE;
      }
      // A move of the opponent's, of the kind that a null move brings to light.
      const SavedState saved = board.save();
      makeNullMove(board);
      const Move threat = anyOf(pseudoLegalMoves(board, NULL_MOVE));
      unmakeNullMove(board, saved);
      handed = rest(MovePicker::main(thread, PLY, hashMove, threat));
      if (hashMove) handed.push_back(hashMove);
    }
    ASSERT_EQ(playable(handed), expected) << writeFen(board);
  });
}

TEST_F(MovePickerTest, OrdersTheMainStages) {
  // Winning captures, killers, quiet moves, losing captures, king moves.
  setUp("4k3/3p4/2n1q3/8/3P1N2/2Q5/P7/6K1 w - -");
  thread.killers[PLY] = {read("a2a4"), read("f4h5")};
  Texts order = texts(rest(MovePicker::main(thread, PLY, NULL_MOVE, NULL_MOVE)));
  ASSERT_GT(order.size(), 9U);
  EXPECT_EQ(Texts(order.begin(), order.begin() + 3), (Texts{"f4xe6", "a2a4", "f4h5"}));
  EXPECT_EQ(order[order.size() - 6], "c3xc6");
  // The capture of the piece that threatens comes first, lose what it may.
  const Move threat(Square::at(2, 5), Square::at(3, 3));
  order = texts(rest(MovePicker::main(thread, PLY, NULL_MOVE, threat)));
  EXPECT_EQ(Texts(order.begin(), order.begin() + 2), (Texts{"f4xe6", "c3xc6"}));
}

TEST_F(MovePickerTest, AnswersTheThreatFirstAndChecksLast) {
  // The bishop on g5 threatens the rook on d2: it moves away, or something comes between.
  setUp("k7/8/8/6b1/8/7P/3R4/K5N1 w - -");
  const Move threat(Square::at(6, 4), Square::at(3, 1));
  std::vector<Move> quiet = lateMoves(threat);
  std::erase_if(quiet, [&](Move move) { return board.at(move.from()).type() == KING; });
  ASSERT_FALSE(quiet.empty());
  const auto answers = [&](Move move) {
    const bool away = move.from() == Square::at(3, 1);
    const bool between = move.to() == Square::at(5, 3) || move.to() == Square::at(4, 2);
    return (away || between) && see(board, WHITE, move) >= 0;
  };
  EXPECT_TRUE(std::is_partitioned(quiet.begin(), quiet.end(), answers));
  EXPECT_TRUE(answers(quiet.front()));
  EXPECT_FALSE(answers(quiet.back()));

  setUp("k7/8/8/8/8/3R4/8/K7 w - -");
  Texts order = texts(lateMoves(NULL_MOVE));
  ASSERT_EQ(order.size(), 17U);
  order.resize(14);  // the king's moves follow
  std::sort(order.end() - 2, order.end());
  EXPECT_EQ(order[12], "d3a3");
  EXPECT_EQ(order[13], "d3d8");
}

TEST_F(MovePickerTest, OrdersEvasions) {
  // In check by the knight: the hash move first, then captures by what they win.
  setUp("4k3/8/8/8/8/3n4/2P5/4K3 w - -");
  const Move check(Square::at(4, 4), Square::at(3, 2));
  const Move lastMove = check.with(Move::CHECK);
  const auto first = [&](Move hashMove) {
    return moveToText(MovePicker::evasions(thread, PLY, lastMove, hashMove).next());
  };
  EXPECT_EQ(first(NULL_MOVE), "c2xd3");
  EXPECT_EQ(first(Move(E1, E1 + UP)), "e1e2");

  MovePicker captures = MovePicker::evasions(thread, PLY, lastMove, NULL_MOVE);
  ASSERT_GT(captures.evasionCount(), 1);
  captures.dropQuietEvasions();
  EXPECT_EQ(texts(rest(captures)), Texts{"c2xd3"});
}

TEST_F(MovePickerTest, LeavesOutHopelessCapturesInQuiescence) {
  // A pawn and a knight to take for nothing, and a pawn that costs the queen.
  setUp("6k1/5p2/8/p2n3p/8/1B6/8/R2Q3K w - -");
  const auto captures = [&](int threshold, bool checks, Move hashMove, int expectedPruned) {
    const MovePicker picker = MovePicker::quiescence(thread, PLY, threshold, checks, hashMove);
    EXPECT_EQ(picker.largestPruned(), expectedPruned);
    std::vector<Move> moves = rest(picker);
    std::erase_if(moves, [](Move move) { return !move.isCapture(); });
    return texts(moves);
  };
  const Texts all = captures(0, false, NULL_MOVE, 0);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(Texts(all.begin() + 2, all.end()), (Texts{"a1xa5", "d1xh5"}));
  EXPECT_EQ(captures(101, false, NULL_MOVE, 100).size(), 2U);
  EXPECT_EQ(captures(301, false, NULL_MOVE, 300), Texts{});
  EXPECT_EQ(captures(301, false, read("a1a5"), 300), Texts{"a1xa5"});
  // With the knight gone the bishop's capture on f7 would be a check.
  setUp("6k1/5p2/8/p6p/8/1B6/8/R6K w - -");
  EXPECT_EQ(captures(101, true, NULL_MOVE, 100).size(), 0U);
  setUp("7k/5p2/8/p6p/8/1B6/8/R6K w - -");
  thread.lastCut[PLY] = read("a1a5");
  EXPECT_EQ(captures(0, false, NULL_MOVE, 0).front(), "a1xa5");
}

TEST_F(MovePickerTest, FollowsCapturesByQuietChecks) {
  setUp("6k1/8/8/8/8/4N3/4B3/4R2K w - -");
  EXPECT_EQ(rest(MovePicker::quiescence(thread, PLY, 0, false, NULL_MOVE)), std::vector<Move>{});
  const std::vector<Move> moves = rest(MovePicker::quiescence(thread, PLY, 0, true, NULL_MOVE));
  ASSERT_FALSE(moves.empty());
  for (const Move move : moves) {
    Move copy = move;
    EXPECT_TRUE(givesCheck(board, copy, board.kingSquare(BLACK))) << moveToText(move);
    EXPECT_GE(see(board, WHITE, move), 0) << moveToText(move);
  }
}

}  // namespace
}  // namespace ombrin
