// Pawn structure, passed pawns, the pawn hash and pawn races.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "eval/evaluated_position.h"
#include "eval/passed_pawns.h"
#include "eval/pawn_race.h"
#include "eval/pawn_structure.h"

namespace ombrin {
namespace {

// Of White's pawns.
TEST(PawnStructure, FindsStrengthAndWeakness) {
  struct Case {
    std::string_view fen;
    PhaseScore score;
  };
  constexpr Case CASES[] = {
      {"4k3/8/8/8/8/8/8/4K3 w - -", {0, 0}},
      // Square 8 0, isolated on an open file -26 -28, passed 4 6.
      {"4k3/8/8/8/8/8/4P3/4K3 w - -", {-14, -22}},
      // Not open: square, isolated -10 -16. The pawn in front does not double this one.
      {"4k3/4p3/8/8/8/8/4P3/4K3 w - -", {-2, -16}},
      // A pawn behind it, of either colour, doubles one: -10 -20 on rank 4 file e would be -5 -20,
      // and -10 open; the rear one is not open, so only the front one is passed.
      {"4k3/8/8/8/4P3/8/4P3/4K3 w - -", {24 - 26 + 4 - 15 + 8 - 10, 2 - 24 + 14 - 20 - 16}},
      {"4k3/8/8/8/4P3/4p3/8/4K3 w - -", {24 - 26 + 4 - 15, 2 - 24 + 14 - 20}},
      // A duo of passed pawns on rank 5: squares 20 3 and 8 8, passed 20 40 and 28 40, duo twice.
      {"4k3/8/8/4PP2/8/8/8/4K3 w - -", {20 + 8 + 20 + 28 + 40, 3 + 8 + 40 + 40 + 64}},
      // A defended passed pawn on rank 6 (8 12, 44 88, 16 16, free 6); its defender (20 3, 20 40)
      // is backward, -8 -7 and open -12 -2: halves round towards zero.
      {"4k3/8/5P2/4P3/8/8/8/4K3 w - -",
       {8 + 44 + 16 + 6 + 20 + 20 - 20, 12 + 88 + 16 + 3 + 40 - 9}},
      // b4 is passed in a duo (18 18, 16 20); beside it c4 (8 4) is a candidate against d7 (8 8).
      {"4k3/3p4/8/8/1PP5/8/8/4K3 w - -", {0 + 18 + 16 + 8 + 8, 6 + 18 + 20 + 4 + 8}},
      // c3 has let b4 pass and is backward, -5 -10, with -12 -2 for the open file.
      {"4k3/8/8/3p4/1P6/2P5/8/4K3 w - -", {0 + 18 + 0 - 17, 6 + 18 - 4 - 12}},
      // The same behind a black pawn.
      {"4k3/8/8/8/1Pp5/2P5/8/4K3 w - -", {0 + 18 + 0 - 5, 6 + 18 - 4 - 10}},
      // From its start square c2 could join b3 on c4, but b5 guards that: backward.
      {"4k3/8/8/1p6/8/1P6/2P5/4K3 w - -", {-6 + 0 - 17, 0 - 4 - 12}},
      // With d3 (20 1, passed 4 2) it has more helpers than there are guards.
      {"4k3/8/8/1p6/8/1P1P4/2P5/4K3 w - -", {-6 + 20 + 4 + 0, 0 + 1 + 2 - 4}},
      // b2 can come to b3 and defend c4 (8 4), which is not backward; b2 itself (-6 0) is.
      {"4k3/8/2p5/8/2P5/8/1P6/4K3 w - -", {8 - 6 - 17, 4 + 0 - 12}},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    PawnSideInfo info;
    const PhaseScore score = pawnStructure(position.board, WHITE, info);
    EXPECT_EQ(score.middlegame(), test.score.middlegame()) << test.fen;
    EXPECT_EQ(score.endgame(), test.score.endgame()) << test.fen;
  }
}
TEST(PawnStructure, TellsTheOtherTermsWhatTheyAsk) {
  EvaluatedPosition position("4k3/pp4p1/8/3Pp2P/5pP1/5P2/2P5/4K3 w - -");
  const PawnSideInfo& white = position.entry().sides[WHITE];
  EXPECT_EQ(white.filesWithoutPawns, 0b00010011);
  EXPECT_EQ(white.firstFile(), 2);
  EXPECT_EQ(white.lastFile(), 7);
  EXPECT_EQ(white.passedCount, 1);
  EXPECT_EQ(white.passedPawn(0), Square::at(3, 4));
  EXPECT_EQ(white.passedFiles, 1 << 3);
  EXPECT_EQ(white.lightSquarePawns, 5);
  // c2 4, in the middle 2; f3 1 there and 2 on the king's wing, where g4 counts 3 and h5 1.
  EXPECT_EQ(white.shelter, (std::array<std::int8_t, 3>{4, 3, 6}));
  // e5 storms the middle with 2 and the king's wing with 1, f4 with 3 and 2, each less 1: f3 stops
  // it and no pawn stands beside it.
  EXPECT_EQ(white.storm, (std::array<std::int8_t, 3>{0, 4, 2}));
  EXPECT_EQ(position.entry().sides[BLACK].passedCount, 1);
  // d5 storms with 2 and 3, on the king's wing g4 with 1 and h5 with 2; nothing is in touch.
  EXPECT_EQ(position.entry().sides[BLACK].storm, (std::array<std::int8_t, 3>{2, 3, 3}));

  EvaluatedPosition none("4k3/8/8/8/8/8/8/4K3 w - -");
  for (const PawnSideInfo& side : none.entry().sides) {
    EXPECT_EQ(side.filesWithoutPawns, 0xff);
    EXPECT_EQ(side.passedCount, 0);
    EXPECT_EQ(side.shelter, (std::array<std::int8_t, 3>{}));
    EXPECT_EQ(side.storm, (std::array<std::int8_t, 3>{}));
  }
}

// Of White's passed pawns.
TEST(PassedPawns, DependOnWhatStandsAroundThem) {
  struct Case {
    std::string_view fen;
    int value;
  };
  constexpr Case CASES[] = {
      // Free to go on (6), enemy king 7 - 2 files off (5 x 16), own king 3 off (-1 x 8).
      {"8/7k/4P3/8/4K3/8/8/8 w - -", 12 + (3 - 2) * 16 + (2 - 3) * 8},
      // Blocked by a king: -12; by a bishop: twice.
      {"8/4k3/4P3/8/4K3/8/8/8 w - -", -12 - 2 * 16 - 8},
      {"8/4b2k/4P3/8/4K3/8/8/8 w - -", -24 + 16 - 8},
      {"8/4r2k/4P3/8/4K3/8/8/8 w - -", -12 + 16 - 8},
      // A rook behind it, the own and the enemy's; one with a pawn between does not count.
      {"8/7k/4P3/8/3K4/8/4R3/8 w - -", 12 + 16 - 8 + 20},
      {"8/7k/4P3/8/3K4/8/4r3/8 w - -", 16 - 8 - 20},
      {"8/7k/4P3/8/3K4/4P3/4R3/8 w - -", 12 + 16 - 8},
      // On the seventh rank with a free way: what the opponent has to give for it.
      {"7k/1P6/8/8/8/8/n7/K7 w - -", 70},
      {"7k/1P6/8/8/8/8/r7/1K6 w - -", 230},
      {"7k/1P6/8/8/8/8/q7/7K b - -", 750},
      {"7k/1P6/8/8/8/8/p7/K7 w - -", (6 - 2) * 24 + (2 - 7) * 12},
      // The square is covered by the only piece: the king must be beside the pawn,
      {"6rk/1P6/2K5/8/8/8/8/8 w - -", 230},
      {"6rk/1P6/2K5/8/8/8/8/8 b - -", 230},
      // or two files beside it with the move,
      {"6rk/1P1K4/8/8/8/8/8/8 w - -", 230},
      {"6rk/1P1K4/8/8/8/8/8/8 b - -", (6 - 2) * 24 + (2 - 2) * 12},
      // but not on the last rank, and not with the enemy king near.
      {"2r4K/1P6/8/8/8/8/8/7k w - -", (7 - 2) * 24 + (2 - 6) * 12},
      {"6r1/1P1k4/K7/8/8/8/8/8 w - -", (2 - 2) * 24 + (2 - 2) * 12},
      // Two pieces: no such help.
      {"6rk/1P5n/2K5/8/8/8/8/8 w - -", (6 - 2) * 24 + (2 - 2) * 12},
      // A push that loses the pawn earns nothing.
      {"8/3k4/8/4P3/8/2K5/8/8 w - -", (1 - 2) * 16 + (2 - 3) * 8},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    EXPECT_EQ(passedPawns(position.board, position.entry(), WHITE), test.value) << test.fen;
  }
}

TEST(PawnScore, GoesFromMiddlegameToEndgameWithThePieces) {
  // 26 units are left: -14 and -22 for e2 (see above); 4 for the free way, of which half counts.
  EvaluatedPosition position("q3k2n/8/8/8/8/8/4P3/Q3K2N w - -");
  EXPECT_EQ(position.evaluator.pawnScore(), ((2 - 14) * 26 + (4 - 22) * 38) / 64);
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

TEST(PawnRace, IsWonByWhoQueensFirst) {
  struct Case {
    std::string_view fen;  // without the side to move
    int whiteToMove, blackToMove;
  };
  constexpr Case CASES[] = {
      // The square of the pawn, and a king in it.
      {"8/8/8/P6k/8/8/8/4K3", 425, 425},
      {"8/8/2k5/P7/8/8/8/4K3", 0, 0},
      {"8/8/8/P3k3/8/8/8/7K", 425, 0},
      // The double step counts as one move.
      {"8/8/8/8/8/6k1/P7/7K", 375, 0},
      // Own king in front: a move more, and shut in by the defender in the corner nothing.
      {"K7/8/P7/8/8/8/8/7k", 425, 425},
      {"K7/2k5/P7/8/8/8/8/8", 0, 0},
      {"K1k5/8/P7/8/8/8/8/8", 0, 0},
      {"8/K1k5/P7/8/8/8/8/8", 0, 0},
      {"7K/5k2/7P/8/8/8/8/8", 0, 0},
      {"7K/8/7P/7k/8/8/8/8", 425, 0},
      // The king on a key square.
      {"4k3/8/3K4/8/4P3/8/8/8", 400, 400},
      {"8/4k3/8/8/3KP3/8/8/8", 0, 0},
      // It must reach one first; the opposition makes up for the move.
      {"8/8/7k/8/6K1/8/4P3/8", 375, 0},
      {"8/8/6k1/8/6K1/8/4P3/8", 375, 375},
      // On the seventh rank the key squares lie beyond the board.
      {"8/1P1k4/8/8/8/8/8/4K3", 475, 0},
      // The king shepherds a rook pawn.
      {"8/8/1K6/P7/2k5/8/8/8", 425, 425},
      // Two pawns too far apart for the king, no nearer than they must be.
      {"8/4k3/8/8/1P5P/8/8/K7", 400, 400},
      {"8/4k3/8/8/3P1P2/8/8/K7", 0, 0},
      // Both run: the first to queen wins if that covers the other's square,
      {"8/8/7k/P7/p7/8/8/7K", 425, -425},
      {"8/8/7k/8/P6p/8/8/K7", -425, -425},
      // unless the other king guards it too,
      {"8/8/8/P7/p7/8/1k6/7K", 0, -425},
      {"1K6/8/7k/8/P6p/8/8/8", 0, -425},
      // or if the new queen gives check,
      {"4k3/8/7K/P7/4p3/8/8/8", 425, -425},
      {"8/1K6/7k/8/P6p/8/8/8", -425, -425},
      // or if it comes two moves earlier.
      {"7k/8/8/8/P7/8/7p/K7", -475, -475},
      {"8/1P6/8/6k1/4p3/8/8/7K", 475, 475},
      // Pieces on both sides: the search will see.
      {"7n/8/8/P6k/8/8/8/N3K3", 0, 0},
      // With a knight White is the only one who races.
      {"8/8/8/P6k/8/8/p7/N3K3", 425, 425},
  };
  for (const Case& test : CASES) {
    for (const Color side : {WHITE, BLACK}) {
      EvaluatedPosition position(std::string(test.fen) + (side == WHITE ? " w - -" : " b - -"));
      EXPECT_EQ(pawnevaluator(position.board, position.entry()),
                side == WHITE ? test.whiteToMove : test.blackToMove)
          << test.fen << " " << side;
    }
  }
}

}  // namespace
}  // namespace ombrin
