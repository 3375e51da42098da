// King safety and piece activity, worked out by hand.
#include "eval/evaluated_position.h"

namespace ombrin {
namespace {

struct Case {
  std::string_view fen;
  int value;  // of White
};

TEST(KingSafety, WeighsShelterAttackAndActivity) {
  constexpr Case CASES[] = {
      // Eight units and no pawns: 8 x 16 / 256 of -24 on e1 and of 22 on e4.
      {"r3k1n1/8/8/8/8/8/8/4K3 w - -", -12},
      {"r3k1n1/8/8/8/4K3/8/8/8 w - -", 11},
      // From its only pawn it is 4 files, 24; from the nearer of the enemy's two it is 2, 8.
      {"4k3/1pp5/8/8/8/P7/8/4K3 w - -", 16 * 24 * (-24 - 24 - 8) / 256},
      // The pawns of both are to the right.
      {"4k3/6p1/8/8/8/7P/8/K7 w - -", 12 * 24 * (-32 - 36 - 16) / 256},
      // Thirteen units: nothing bears on the king. No shelter costs 52 (as castling), and what is
      // done with the place, -24, is done with that too.
      {"n1q1k3/8/8/8/8/8/8/4K3 w - -", 8 * 8 * (-52 - 24) / 256},
      // Fourteen and more: full shelter, 16, costs nothing.
      {"r1q1k3/8/8/8/8/8/5PPP/6K1 w - -", 0},
      // Seven of the shelter gone: -8 x 15 x 7 / 32. The bishop in front of the king mends 2.
      {"r1q1k3/8/8/8/8/8/5P1P/6K1 w - -", -26},
      {"r1q1k3/8/8/8/8/8/5PBP/6K1 w - -", -18},
      // In the middle the shelter is 4. Castling would make it 16 - 3 + 1 or 16 - 4 + 2, less when
      // pieces stand in the way.
      {"r1q1k3/8/8/8/8/8/PPP2PPP/R3K2R w - -", -45},
      {"r1q1k3/8/8/8/8/8/PPP2PPP/R3K2R w KQ -", -7},
      {"r1q1k3/8/8/8/8/8/PPP2PPP/R3KB1R w KQ -", -8 * 15 * (16 - 13) / 32},
      {"r1q1k3/8/8/8/8/8/PPP2PPP/RN1QK2R w KQ -", -8 * 15 * (16 - 13) / 32},
      {"r1q1k3/8/8/8/8/8/PPP2PPP/R3K2R w Q -", -8 * 15 * (16 - 9) / 32},
      // The queen on d4 looks at e3 with 14 times 8: danger 28, -36 x 7/8 x 12/32.
      {"r3k3/8/8/8/3q4/8/5PPP/6K1 b - -", -11},
      // A protected pawn on e3 costs her 7 of 12: danger 10, and too little comes of it.
      {"r3k3/8/8/8/3q4/4P3/5PPP/6K1 b - -", 0},
      // Queen with 14 times 8 and the rook behind her with 12 + 4 times 4 on the open file; base 4
      // and no shelter double it: 96, and 4 for the move. -432 x 7/8 x 12/32, and -60.
      {"4r1k1/8/8/4q3/8/8/8/4K3 w - -", -141 - 60},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    EXPECT_EQ(position.evaluator.breakdown().terms.kingSafety[WHITE], test.value) << test.fen;
  }
}

// Obstacles before a bishop or a rook. The queen on d3 makes a danger of 2 x (64/4 + 4) + 4 = 44,
// for which -36, and where there is no shelter a point of attack counts half a point of danger.
TEST(KingSafety, LooksThroughObstaclesAtTheirCost) {
  constexpr Case CASES[] = {
      // A bishop with 16 times 3: danger 68. A pawn of its own costs it 4, and all if it is stuck.
      {"n3k3/8/8/8/7b/3q4/8/4K3 w - -", -64 - 81},
      {"n3k3/8/8/8/7b/3q2p1/8/4K3 w - -", -64 - 68},
      {"n3k3/8/8/8/7b/3q2p1/6N1/4K3 w - -", -64 - 36},
      // A white pawn costs 2, one more file to the pawns 16; protected twice 6, and another on f2.
      {"n3k3/8/8/8/7b/3q2P1/8/4K3 w - -", -64 - 72 - 16},
      {"n3k3/8/8/8/7b/3q2P1/5P1P/4K3 w - -", -56 - 49 - 4},
      // A bishop in the way costs 4, and at the end of it 4 more.
      {"n3k3/8/8/8/7b/3q2B1/8/4K3 w - -", -64 - 68},
      {"n3k3/8/8/8/7b/3q4/5B2/4K3 w - -", -64 - 57},
      // A rook on the second rank with 8 times 4.
      {"n3k3/8/8/8/8/3q4/r7/4K3 w - -", -72 - 64},
      {"n3k3/8/8/8/8/3q4/rN6/4K3 w - -", -72 - 57},
      {"n3k3/8/8/8/8/3q4/rR6/4K3 w - -", -72 - 49},
      {"n3k3/8/8/8/8/3q4/r2R4/4K3 w - -", -72 - 36},
      {"n3k3/8/8/8/8/3q4/rP6/4K3 w - -", -72 - 49 - 20},
      {"n3k3/8/8/8/8/p2q4/rN6/4K3 w - -", -72 - 64},  // a pawn attacks the knight: no cost
      // A rook behind its own pawn, which can capture on d4, 12 - 2 (storm 3, shelter 1: 67),
      {"n3rk2/8/8/4p3/3P4/3q4/8/4K3 w - -", -81 - 78 - 4},
      // or on f4 after a step (storm 2: 65),
      {"n3rk2/8/8/4p3/8/3q1P2/8/4K3 w - -", -76 - 74 - 4},
      // where a protected knight stops it, 6 + 4 (49),
      {"n3rk2/8/8/4p3/4N3/3q1P2/8/4K3 w - -", -76 - 43 - 4},
      // and a pawn for good (storm 1, shelter 2: 42).
      {"n3rk2/8/8/4p3/4P3/3q1P2/8/4K3 w - -", -67 - 33},
      // With nothing to capture ever it stays there for good, too (storm 2: 46).
      {"n3rk2/8/8/4p3/8/3q4/8/4K3 w - -", -81 - 39},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    EXPECT_EQ(position.evaluator.breakdown().terms.kingSafety[WHITE], test.value) << test.fen;
  }
}

TEST(PieceActivity, CountsPlacesMobilityAndThreats) {
  constexpr Case CASES[] = {
      // A knight: no square to go to, -24 / 4.
      {"4k3/8/8/8/8/1P6/2P5/N3K3 w - -", -6},
      // Six pawns against it make 6 x 20 / 8 of its place; a pawn ahead 8, all free 21 / 4.
      {"4k3/pp4pp/4P3/4N3/8/p6p/8/4K3 w - -", 15 + 8 + 5},
      // It attacks c6 and g6, c6 protected: 2 x 6; six squares 14 / 4; chased by none.
      {"4k3/1p6/2p3p1/4N3/8/8/8/4K3 w - -", 7 + 12 + 3},
      // Chased by the pawn three squares ahead, -8; seven squares 17 / 4; its place 1 x 4 / 8.
      {"4k3/8/3p4/8/8/3N4/8/4K3 w - -", -8 + 4},
      // Against 18 units 18 of 32 parts middlegame, -24 / 2, the rest endgame, -24 / 4.
      {"qr2k2b/8/8/8/8/1P6/2P5/N3K3 w - -", (14 * -6 + 18 * -12) / 32},
      // Trapped in the corner: c7 takes the way out of a8. Place -72 x 1 / 8, b6 free: -8 / 4.
      {"N3k3/2p5/8/8/8/8/8/4K3 w - -", -9 - 100 + 6 * 2 - 2},
      // On a7 with c6 -32 / 8 and no more than two squares, 0; with a6 and b7 the same.
      {"4k3/N7/2p5/8/8/8/8/4K3 w - -", -4 - 100 + 12},
      {"4k3/Np6/p7/8/8/8/8/4K3 w - -", -8 - 100 + 1},
      // A bishop: place -16, 7 squares 8; 6 x 3 for what it attacks, in 29 of 32 parts; pawn b7
      // protects a6.
      {"4k3/8/8/8/8/8/8/4KB2 w - -", -16 + 8},
      {"4k3/8/n7/8/8/8/8/4KB2 w - -", -16 + 4 + (29 * 18 + 3 * 3) / 32},
      {"4k3/1p6/p7/8/8/8/8/4KB2 w - -", -16 + 4},
      // Shut in on a7 behind a pawn that it attacks, and on h8 behind one two squares away.
      {"4k3/B7/1p6/8/8/8/8/4K3 w - -", -8 - 16 + 18 - 100},
      {"4k2B/8/5p2/8/8/8/8/4K3 w - -", -12 - 16 + 18 - 100},
      // A rook: 10 squares 19; 8 on a half-open file and 12 for the pawn; 12 on one of four open
      // ones.
      {"4k3/8/8/8/8/8/8/R3K3 w - -", 19},
      {"4k3/1ppp4/8/8/8/8/PPP5/3RK3 w - -", 12 + 8 + 12},
      {"4k3/1ppp4/8/8/8/8/PPPP4/4KR2 w - -", 16 + 12},
      // On the seventh with the king on the eighth 40; 14 squares 25; seven open files -2.
      {"4k3/7R/8/8/8/8/P7/4K3 w - -", 25 + 40 - 2},
      // Both on the seventh: 10, the king attacked 12.
      {"8/4k2R/8/8/8/8/7P/4K3 b - -", 6 + 12 + 10},
      // A rook that its king shuts in: no square, -36.
      {"4k3/8/8/8/8/8/6PP/6KR w - -", -36 - 50},
      {"4k3/8/8/8/8/8/6PP/5KR1 w - -", -30 - 50},
      {"4k3/8/8/8/8/8/PP6/RK6 w - -", -36 - 50},
      {"4k3/8/8/8/8/8/7P/6KR w - -", -36},
      // A queen on the seventh: -4 there, 32, five files from the king.
      {"4k3/Q7/8/8/8/8/8/4K3 w - -", -6 + 32 + 8 - 8},
      {"8/Q3k3/8/8/8/8/8/4K3 b - -", -6 + 10 + 8 - 8},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    EXPECT_EQ(position.evaluator.breakdown().terms.activity[WHITE], test.value) << test.fen;
  }
}

}  // namespace
}  // namespace ombrin
