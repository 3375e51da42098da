// The sum of the evaluation: its cache, its symmetries, and totals worked out by hand.
#include "eval/evaluator.h"

#include <cstdlib>
#include <memory>
#include <random>
#include <string>

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
    // Against a rook the place counts 8 x 16. The rook has 10 squares, 19.
    {"4k3/8/8/8/8/8/8/R3K3 w - -", {{500, 0}, 0, 0, 0, {-18, -12}, {19, 0}}, 1024, 519},
    // The pair, (2 x 24 + 25 + 69) x 700/1024 x 1084/1024; places -16 and -24, 7 squares 8 each.
    {"4k3/8/8/8/8/8/8/4KB1B w - -", {{600, 0}, 102, 0, 0, {-18, -18}, {-24, 0}}, 256, 171},
    // On g1 a bishop has the same squares on a better place.
    {"4k3/8/8/8/8/8/8/4KBB1 b - -", {{600, 0}, 102, 0, 0, {-18, -18}, {-20, 0}}, 1024, -676},
    // The pawn's structure -22, and 4 for its free way; the king reaches a key square and the pawn
    // has 5 moves, 500 - 125. A pawn against it makes a king's place count 12 x 24.
    {"4k3/8/8/8/8/8/4P3/4K3 w - -", {{100, 0}, 0, -18, 375, {-18, -27}, {0, 0}}, 1024, 472},
    // The pawn: structure 4, free way 4, enemy king (7 - 2) x 4. That king is 7 files away, -18, at
    // the edge, -8; White's is 2 from its own pawn, -16, on a good square, 16.
    {"8/8/2K5/8/P6k/8/8/8 w - -", {{100, 0}, 0, 28, 400, {0, -29}, {0, 0}}, 1024, 563},
    // Places 20 x 24 and 20 x 16 of -24; the rook's 12 squares 25, on one of five open files 8.
    {"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - -", {{800, 300}, 0, 0, 0, {-45, -30}, {33, 0}}, 1024, 524},
    // The rook has 5 squares and attacks h7, -6 + 2 x 6, half-open 8; two pawns count 16 x 16.
    {"6k1/5ppp/8/8/8/8/5PP1/6KR w - -", {{700, 300}, 0, 0, 0, {-45, -24}, {14, 0}}, 1024, 399},
    // Rooks with 5 squares: (27 x -6 + 5 x 3) / 32.
    {"5rk1/5ppp/8/8/8/8/5PPP/5RK1 b - -", {{800, 800}, 0, 0, 0, {-30, -30}, {-4, -4}}, 900, 5},
    // Queens at home, (22 x -6 + 10 x -2) / 32, and 7 from the kings, whose places count 20 x 12.
    {"3q2k1/5ppp/8/8/8/8/5PPP/3Q2K1 b - -",
     {{1300, 1300}, 0, 0, 0, {-22, -22}, {-10, -10}},
     896,
     5},
    // Bishops of opposite colours at home, -16, with 7 squares, 8; 412 + 6 x 16.
    {"2b3k1/5ppp/8/8/8/8/5PPP/2B3K1 w - -", {{600, 600}, 0, 0, 0, {-45, -45}, {-8, -8}}, 508, 2},
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
  forRandomPositions(6, 120, [&](Board& position) {
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
  EXPECT_GT(compared, 6000);
}

TEST(Evaluator, RemembersWhatItWouldComputeAndLeavesTheBoardAlone) {
  Board board;
  Evaluator evaluator(board);
  evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  Evaluator fresh(board);
  forRandomPositions(2, 80, [&](Board& position) {
    board.copyFrom(position);
    const Score first = evaluator.evaluate();
    const Score second = evaluator.evaluate();
    const PawnEntry& entry = evaluator.pawnEntry();
    fresh.pawnHash().resize(PawnHash::FULL_SIZE);
    ASSERT_EQ(first, fresh.evaluateUncached()) << writeFen(board);
    ASSERT_EQ(second, first) << writeFen(board);
    ASSERT_EQ(fresh.breakdown().score, first) << writeFen(board);
    const PawnEntry& freshEntry = fresh.pawnEntry();
    for (const Color color : {WHITE, BLACK}) {
      const PawnSideInfo& info = entry.sides[color];
      ASSERT_EQ(info.passedCount, freshEntry.sides[color].passedCount);
      ASSERT_EQ(info.filesWithoutPawns, freshEntry.sides[color].filesWithoutPawns);
      for (int n = 0; n < info.passedCount; ++n) {
        ASSERT_TRUE(board.at(info.passedPawn(n)).isPawnOf(color));
      }
    }
    ASSERT_EQ(board.squares, position.squares);
    ASSERT_EQ(board.pieceSquare, position.pieceSquare);
    ASSERT_EQ(board.hash, position.hash);
  });
}

TEST(Evaluator, KeepsThePawnEntryCurrentAndNeverCachesADraw) {
  // White is ahead and could win but for the rook pawn; Black, if the structure said so.
  constexpr std::string_view DRAW_BY_ROOK_PAWN = "6k1/8/8/8/7P/8/8/4KB2 w - -";
  EvaluatedPosition position(DRAW_BY_ROOK_PAWN);
  Evaluator& evaluator = position.evaluator;
  EXPECT_EQ(evaluator.evaluate(), DRAW);
  evaluator.pawnHash().slot(position.board.phash).endgame = -3000;
  EXPECT_LT(evaluator.evaluate(), DRAW);

  ASSERT_TRUE(setFen(position.board, "4k3/8/8/8/8/8/4P3/4K3 w - -"));
  const Score score = evaluator.evaluate();
  ASSERT_TRUE(setFen(position.board, START_FEN));
  evaluator.evaluate();
  ASSERT_TRUE(setFen(position.board, "4k3/8/8/8/8/8/4P3/4K3 w - -"));
  evaluator.pawnHash().slot(position.board.phash).endgame = -3000;
  EXPECT_EQ(evaluator.evaluate(), score);  // remembered
  EXPECT_EQ(evaluator.pawnEntry().sides[WHITE].passedCount, 1);
  EXPECT_EQ(evaluator.evaluations, 5U);
  // The other side's view of the same men is another position.
  position.board.side = BLACK;
  EXPECT_NE(evaluator.evaluate(), score);
}

// Any number of men of both sides on any squares, kings often at home.
void placeMen(Board& board, std::mt19937& random) {
  board.clear();
  const auto below = [&random](unsigned n) { return static_cast<int>(random() % n); };
  const auto place = [&](Color color, PieceType type) {
    Square square;
    do {
      square = type == PAWN ? Square::at(below(8), 1 + below(6)) : Square::at(below(8), below(8));
    } while (!board.at(square).isEmpty());
    board.addPiece(color, type, square);
  };
  const bool home = below(3) == 0;
  for (const Color color : {WHITE, BLACK}) {
    if (home) {
      board.addPiece(color, KING, color == WHITE ? E1 : E8);
      board.addPiece(color, ROOK, color == WHITE ? H1 : H8);
      board.rights |= kingSideRight(color);
    } else {
      place(color, KING);
    }
  }
  const unsigned pieces = std::array{1U, 2U, 4U, 8U}[below(4)];
  for (const Color color : {WHITE, BLACK}) {
    for (int n = below(9); n > 0; --n) place(color, PAWN);
    for (int n = below(pieces); n > 0; --n) {
      place(color, std::array{KNIGHT, BISHOP, ROOK, QUEEN}[below(4)]);
    }
  }
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
  for (int n = 0; n < 20000; ++n) {
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
  EXPECT_EQ(signature, 978656389418594819U);
}

TEST(EvaluationBreakdown, PrintsATable) {
  EvaluatedPosition position("4k3/8/8/3p4/8/3N4/3P4/4K3 w - -");
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* stream = open_memstream(&text, &size);
  ASSERT_NE(stream, nullptr);
  printBreakdown(position.evaluator.breakdown(), stream);
  std::fclose(stream);
  const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
  EXPECT_STREQ(text,
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
