// The sum of the evaluation: its cache, its symmetries, and totals worked out by hand.
#include "eval/evaluator.h"

#include <array>
#include <random>

#include "eval/evaluated_position.h"
#include "support/mirrored_board.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

struct Hand {
  std::string_view fen;
  EvaluationTerms terms;
  int scale, score;
};

const Hand HANDS[] = {
    // Shelter 12 of 16 costs 8 x 32 x 4 / 32. Knights -32 each; bishops -16 - 24; rooks -12; the
    // queen -2 and 7 from the king, 8 - 14.
    {START_FEN, {{4000, 4000}, 0, 0, 0, {-32, -32}, {-176, -176}}, 1024, 6},
    // The kings' places, 8 x 24 x -24 / 256; the tempo is scaled away.
    {"4k3/8/8/8/8/8/8/4K3 w - -", {{0, 0}, 0, 0, 0, {-18, -18}, {0, 0}}, 64, 0},
    // The pair, (2 x 24 + 25 + 69) x 700/1024 x 1084/1024; places -16 and -24, 7 squares 8 each.
    {"4k3/8/8/8/8/8/8/4KB1B w - -", {{600, 0}, 102, 0, 0, {-18, -18}, {-24, 0}}, 256, 171},
    // The rook has 5 squares and attacks h7, -6 + 2 x 6, half-open 8; two pawns count 16 x 16.
    {"6k1/5ppp/8/8/8/8/5PP1/6KR w - -", {{700, 300}, 0, 0, 0, {-45, -24}, {14, 0}}, 1024, 399},
    // The pawn's structure -22, and 4 for its free way; the king reaches a key square and the pawn
    // has 5 moves, 500 - 125. A pawn against it makes a king's place count 12 x 24.
    {"4k3/8/8/8/8/8/4P3/4K3 w - -", {{100, 0}, 0, -18, 375, {-18, -27}, {0, 0}}, 1024, 472},
    // The pawn: structure 4, free way 4, enemy king (7 - 2) x 4. That king is 7 files away, -18, at
    // the edge, -8; White's is 2 from its own pawn, -16, on a good square, 16.
    {"8/8/2K5/8/P6k/8/8/8 w - -", {{100, 0}, 0, 28, 400, {0, -29}, {0, 0}}, 1024, 563},
    // Places 20 x 24 and 20 x 16 of -24; the rook's 12 squares 25, on one of five open files 8.
    {"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - -", {{800, 300}, 0, 0, 0, {-45, -30}, {33, 0}}, 1024, 524},
    // (7 + 42) x 1100/1024 x 1102/1024. Structure -2 -16 and 14 -10 at phase 3. The kings stand
    // beside both files, -4 - 2 - 24. The knight has 7 squares, 17 / 4, its place is worth 4 / 8.
    {"4k3/8/8/3p4/8/3N4/3P4/4K3 w - -", {{400, 100}, 55, -6, 0, {-33, -33}, {4, 0}}, 1024, 359},
    // A lone bishop 24 - 21 + 69, times 700 and 1102. The pawn: 52 146 and 70, of which half, at
    // phase 3. The bishop can only draw: 64.
    {"6k1/P7/8/8/8/8/8/K2b4 w - -", {{100, 300}, -52, 209, 0, {-24, -45}, {0, 4}}, 64, -1},
};

TEST(Evaluator, AddsUpToWhatIsWorkedOutByHand) {
  for (const Hand& hand : HANDS) {
    EvaluatedPosition position(hand.fen);
    const EvaluationBreakdown parts = position.evaluator.breakdown();
    EXPECT_EQ(parts.terms.material, hand.terms.material) << hand.fen;
    EXPECT_EQ(parts.terms.imbalance, hand.terms.imbalance) << hand.fen;
    EXPECT_EQ(parts.terms.pawns, hand.terms.pawns) << hand.fen;
    EXPECT_EQ(parts.terms.race, hand.terms.race) << hand.fen;
    EXPECT_EQ(parts.terms.kingSafety, hand.terms.kingSafety) << hand.fen;
    EXPECT_EQ(parts.terms.activity, hand.terms.activity) << hand.fen;
    EXPECT_EQ(parts.scale, hand.scale) << hand.fen;
    EXPECT_EQ(parts.score, hand.score) << hand.fen;
    EXPECT_EQ(position.evaluator.evaluate(), hand.score) << hand.fen;
  }
}

TEST(Evaluator, DoesNotKnowColoursOrWings) {
  Board board;
  Board twin;
  Evaluator evaluator(board);
  Evaluator twinEvaluator(twin);
  evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  twinEvaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  int compared = 0;
  forRandomPositions(4, 80, [&](Board& position) {
    board.copyFrom(position);
    const Score score = evaluator.evaluate();
    if (!isPairAskedInTurn(board)) {
      mirror(board, true, false, twin);
      ASSERT_EQ(twinEvaluator.evaluate(), score) << writeFen(board);
      ++compared;
    }
    if (board.rights == 0) {  // castling knows left from right
      mirror(board, false, true, twin);
      ASSERT_EQ(twinEvaluator.evaluate(), score) << writeFen(board);
      ++compared;
    }
  });
  EXPECT_GT(compared, 3000);
}

TEST(Evaluator, RemembersWhatItWouldComputeAndLeavesTheBoardAlone) {
  Board board;
  Evaluator evaluator(board);
  evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  Evaluator fresh(board);
  forRandomPositions(1, 80, [&](Board& position) {
    board.copyFrom(position);
    const Score first = evaluator.evaluate();
    ASSERT_EQ(evaluator.evaluate(), first) << writeFen(board);
    fresh.pawnHash().resize(PawnHash::FULL_SIZE);
    ASSERT_EQ(fresh.evaluateUncached(), first) << writeFen(board);
    ASSERT_EQ(fresh.breakdown().score, first) << writeFen(board);
    for (const Color color : {WHITE, BLACK}) {
      ASSERT_EQ(evaluator.pawnEntry().sides[color].cover, fresh.pawnEntry().sides[color].cover);
    }
    ASSERT_EQ(board.squares, position.squares);
    ASSERT_EQ(board.pieceSquare, position.pieceSquare);
    ASSERT_EQ(board.hash, position.hash);
  });
}

TEST(Evaluator, KeepsThePawnEntryCurrentAndNeverCachesADraw) {
  // White is ahead and could win but for the rook pawn; Black, if the structure said so.
  EvaluatedPosition position("6k1/8/8/8/7P/8/8/4KB2 w - -");
  Evaluator& evaluator = position.evaluator;
  const auto pretendThatBlackIsAhead = [&] {
    evaluator.pawnHash().slot(position.board.phash).endgame = -3000;
  };
  EXPECT_EQ(evaluator.evaluate(), DRAW);
  pretendThatBlackIsAhead();
  EXPECT_LT(evaluator.evaluate(), DRAW);

  constexpr std::string_view PASSED_PAWN = "4k3/8/8/8/8/8/4P3/4K3 w - -";
  ASSERT_TRUE(setFen(position.board, PASSED_PAWN));
  const Score score = evaluator.evaluate();
  ASSERT_TRUE(setFen(position.board, START_FEN));
  evaluator.evaluate();
  ASSERT_TRUE(setFen(position.board, PASSED_PAWN));
  pretendThatBlackIsAhead();
  EXPECT_EQ(evaluator.evaluate(), score);  // remembered
  EXPECT_EQ(evaluator.pawnEntry().sides[WHITE].passedCount, 1);
  EXPECT_EQ(evaluator.evaluations, 5U);
  // The other side's view of the same men is another position.
  position.board.side = BLACK;
  EXPECT_NE(evaluator.evaluate(), score);
}

TEST(PawnHash, ForgetsAtResizeAndNeverKnowsTheEmptyStructure) {
  EvaluatedPosition position("4k3/8/8/8/8/8/8/4K3 w - -");
  PawnHash& hash = position.evaluator.pawnHash();
  EXPECT_EQ(hash.misses, 1U);
  position.evaluator.pawnScore();
  EXPECT_EQ(hash.hits, 1U);
  hash.resize(PawnHash::FULL_SIZE + 1);
  EXPECT_EQ(hash.entries(), PawnHash::FULL_SIZE);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&hash.slot(0)) % 256, 0U);
  EXPECT_EQ(hash.hits + hash.misses, 0U);
  position.evaluator.pawnScore();
  EXPECT_EQ(hash.misses, 1U);
  hash.resize(0);
  EXPECT_EQ(hash.entries(), 1U);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // they stop at the request
TEST(PawnHashDeathTest, SaysWhatItCouldNotGet) {
  PawnHash hash;
  EXPECT_DEATH(hash.resize(1ULL << 42), "failed to allocate 281474976710912 bytes for pawnhash\n");
}
#endif

// Any number of men on any squares, often as many of a kind on both sides, and kings at home.
void placeMen(Board& board, std::mt19937& random) {
  board.clear();
  const auto below = [&random](unsigned n) { return static_cast<int>(random() % n); };
  const auto place = [&](Color color, PieceType type) {
    Square square;
    do {
      const int file = below(8);
      square = Square::at(file, type == PAWN ? 1 + below(6) : below(8));
    } while (!board.at(square).isEmpty());
    board.addPiece(color, type, square);
  };
  const int home = below(6);
  for (const Color color : {WHITE, BLACK}) {
    if (home > 1) {
      place(color, KING);
      continue;
    }
    board.addPiece(color, KING, color == WHITE ? E1 : E8);
    board.addPiece(color, ROOK, Square::at(home == 0 ? 0 : 7, color == WHITE ? 0 : 7));
    board.rights |= home == 0 ? queenSideRight(color) : kingSideRight(color);
  }
  const unsigned pieces = std::array{1U, 2U, 4U, 8U}[below(4)];
  const unsigned pawns = std::array{2U, 3U, 6U, 9U}[below(4)];
  const bool alike = below(2) == 0;
  const auto placeForBoth = [&](unsigned limit, auto&& anyType) {
    for (int n = below(limit); n > 0; --n) {
      const PieceType type = anyType();
      place(WHITE, type);
      if (alike) place(BLACK, type);
    }
    for (int n = alike ? 0 : below(limit); n > 0; --n) place(BLACK, anyType());
  };
  placeForBoth(pieces, [&] { return std::array{KNIGHT, BISHOP, ROOK, QUEEN}[below(4)]; });
  placeForBoth(pawns, [] { return PAWN; });
  board.side = below(2) == 0 ? WHITE : BLACK;
}

// Every table entry and every rule leaves its mark on this number. Who changes the evaluation on
// purpose changes it too.
TEST(Evaluator, HasItsSignature) {
  Board board;
  Evaluator evaluator(board);
  evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  std::mt19937 random(1);
  std::uint64_t signature = 0;
  for (int n = 0; n < 50000; ++n) {
    placeMen(board, random);
    const EvaluationBreakdown parts = evaluator.breakdown();
    const EvaluationTerms& terms = parts.terms;
    for (const int part :
         {terms.imbalance, terms.pawns, terms.race, terms.kingSafety[WHITE],
          terms.kingSafety[BLACK], terms.activity[WHITE], terms.activity[BLACK],
          parts.pawnStructure[WHITE].middlegame(), parts.pawnStructure[BLACK].endgame(),
          parts.scale, parts.score.value()}) {
      signature = (signature ^ static_cast<std::uint32_t>(part)) * 0x100000001b3;
    }
  }
  EXPECT_EQ(signature, 18200195729260662584U);
}

TEST(EvaluationBreakdown, PrintsATable) {
  EvaluatedPosition position("4k3/8/8/3p4/8/3N4/3P4/4K3 w - -");
  testing::internal::CaptureStdout();
  printBreakdown(position.evaluator.breakdown(), stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "centipawns           White   Black   total\n"
            "material               400     100     300\n"
            "imbalance                               55\n"
            "pawns                                   -6\n"
            "  middlegame            -2      14     -16\n"
            "  endgame              -16     -10      -6\n"
            "  passed pawns           0       0       0\n"
            "  phase (of 64)                          3\n"
            "pawn race                                0\n"
            "king safety            -33     -33       0\n"
            "piece activity           4       0       4\n"
            "sum                                    353\n"
            "scale (of 1024)                       1024\n"
            "for side to move                       359\n");
}

}  // namespace
}  // namespace ombrin
