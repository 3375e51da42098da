// Terms of the evaluation where they can be worked out by hand. Whole positions are in
// evaluator_test.cpp, whose signature sees what becomes of every term in thousands of others.
#include <span>
#include <string>

#include "board/make_move.h"
#include "board/notation.h"
#include "eval/evaluated_position.h"
#include "eval/material_imbalance.h"
#include "eval/material_table.h"
#include "eval/pawn_race.h"
#include "eval/pawn_structure.h"
#include "eval/scale_factor.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

// A position, and what one term says of it.
struct WorkedOut {
  std::string_view fen;
  int value;
};

template <typename Term>
void expectTerm(std::span<const WorkedOut> cases, Term&& term) {
  for (const WorkedOut& example : cases) {
    EvaluatedPosition position(example.fen);
    EXPECT_EQ(term(position.evaluator), example.value) << example.fen;
  }
}

// The signature of men named by their letters.
Material men(std::string_view letters) {
  Material sum;
  for (const char letter : letters) {
    for (const PieceType type : PIECE_TYPES) {
      if (Piece(WHITE, slotRun(type).first).letter() == letter) sum += Material::of(type);
    }
  }
  return sum;
}

TEST(MaterialImbalance, WeighsWhatTheMenAreWorthTogether) {
  struct Case {
    std::string_view white, black;
    int value;
  };
  constexpr Case CASES[] = {
      {"QRRBBNNPPPPPPPP", "QRRBBNNPPPPPPPP", 0},
      // Bishops 2 x 17 against knights 2 x 11, and the pair without heavy pieces, 25.
      {"BBPPPP", "NNPPPP", 37},
      // A bishop and a knight: 24 + 5, lone bishop with knight -8, 69: 90 x 700 x 1084.
      {"BN", "", 64},
      // The exchange: 41 against a bishop with pawns that count -17: 24 x 1200 x 1090.
      {"RPPPP", "BPPPP", 29},
      // Against two minors -7, which count 18 + 10 more: -35 x 1250 x 1084.
      {"RPPP", "BNPPP", -44},
      // Queen against two rooks, by her minors.
      {"QN", "RRN", 8},
      // Three minors for the queen: -92 - 38, times 1200 and 1060.
      {"QPP", "NNBPP", -157},
  };
  for (const Case& test : CASES) {
    EXPECT_EQ(materialImbalance(men(test.white), men(test.black)), test.value)
        << test.white << " " << test.black;
    EXPECT_EQ(materialImbalance(men(test.black), men(test.white)), -test.value)
        << test.black << " " << test.white;
  }
}

TEST(MaterialImbalance, AsksWhiteFirstForAPairOfBishops) {
  EXPECT_GT(materialImbalance(men("RBB"), men("BBB")), 0);
  EXPECT_GT(materialImbalance(men("BBB"), men("RBB")), 0);
}

TEST(ScaleFactor, KnowsWhatCannotBeWon) {
  constexpr WorkedOut CASES[] = {
      {"4k3/8/8/8/8/8/8/2N1KN2 w - -", DRAWN},
      {"4k3/8/8/8/8/8/8/2B1KN2 w - -", 1024},
      {"4k3/8/8/8/8/8/8/4KB1B w - -", 256},
      {"4k3/7r/8/8/8/8/8/R3K1N1 w - -", 64},  // rook and knight against rook
      {"4k3/p6r/8/8/8/8/P7/R3K3 w - -", 512},
      {"4k3/pp5q/8/8/8/8/PP6/Q3K3 w - -", 768},
      {"4k3/p7/8/8/8/8/8/2N1K3 w - -", 64},     // the knight's side is ahead but has no pawns
      {"4k3/4p3/8/8/8/8/8/R3K3 w - -", 1024},   // a rook is enough
      {"4k3/4n3/8/8/8/8/4P3/N3K3 w - -", 128},  // the last pawn can be had for a piece
      // A rook pawn, and a bishop that does or does not cover its promotion square.
      {"6k1/8/8/8/7P/8/8/4KB2 w - -", DRAWN},
      {"6k1/8/8/8/7P/8/8/2B1K3 w - -", 1024},
      {"5k2/8/8/8/7P/8/8/4KB2 w - -", 1024},  // the king is not in front
      {"8/8/8/6kP/8/8/8/4KB2 w - -", DRAWN},  // level with the pawn is enough
      // Bishops of opposite colours, and of one.
      {"4k3/p4b2/8/8/8/8/P4B2/4K3 w - -", 444},
      {"4k3/p3b3/8/8/8/8/P4B2/4K3 w - -", 1024},
  };
  expectTerm(CASES, [](Evaluator& evaluator) { return evaluator.breakdown().scale; });
  // The first bishop of the list may be gone.
  EvaluatedPosition position("8/6k1/6B1/8/7P/8/8/4KB2 b - -");
  makeMove(position.board, parseMove(position.board, "Kxg6"));
  EXPECT_EQ(position.evaluator.breakdown().scale, DRAWN);
}

// In a middlegame the evaluation does not ask them.
TEST(MaterialTable, KnowsWhereNoEndgameRuleApplies) {
  MaterialTable table;
  PawnEntry pawns;
  int middlegames = 0;
  forRandomPositions(2, 60, [&](Board& board) {
    if (!table.of(board.WhiteMaterial, board.BlackMaterial).isMiddlegame) return;
    ++middlegames;
    evaluatePawns(board, pawns);
    ASSERT_EQ(pawnevaluator(board, pawns), 0) << writeFen(board);
    for (const int sum : {-300, 0, 300}) {
      ASSERT_EQ(scaleFactor(board, pawns, sum), FULL_SCALE) << writeFen(board);
    }
  });
  EXPECT_GT(middlegames, 300);
}

// Of White's pawns.
TEST(PawnStructure, FindsStrengthAndWeakness) {
  struct Case {
    std::string_view fen;
    PhaseScore score;
  };
  constexpr Case CASES[] = {
      // Square 8 0, isolated on an open file -26 -28, passed 4 6.
      {"4k3/8/8/8/8/8/4P3/4K3 w - -", {-14, -22}},
      // A pawn behind it, of either colour, doubles one: -10 -20 on rank 4 file e would be -5 -20,
      // and -10 open; the rear one is not open, so only the front one is passed.
      {"4k3/8/8/8/4P3/8/4P3/4K3 w - -", {24 - 26 + 4 - 15 + 8 - 10, 2 - 24 + 14 - 20 - 16}},
      // A duo of passed pawns on rank 5: squares 20 3 and 8 8, passed 20 40 and 28 40, duo twice.
      {"4k3/8/8/4PP2/8/8/8/4K3 w - -", {20 + 8 + 20 + 28 + 40, 3 + 8 + 40 + 40 + 64}},
      // A defended passed pawn on rank 6 (8 12, 44 88, 16 16, free 6); its defender (20 3, 20 40)
      // is backward, -8 -7 and open -12 -2: halves round towards zero.
      {"4k3/8/5P2/4P3/8/8/8/4K3 w - -",
       {8 + 44 + 16 + 6 + 20 + 20 - 20, 12 + 88 + 16 + 3 + 40 - 9}},
      // b4 is passed in a duo (18 18, 16 20); beside it c4 (8 4) is a candidate against d7 (8 8).
      {"4k3/3p4/8/8/1PP5/8/8/4K3 w - -", {0 + 18 + 16 + 8 + 8, 6 + 18 + 20 + 4 + 8}},
      // From its start square c2 could join b3 on c4, but b5 guards that: backward.
      {"4k3/8/8/1p6/8/1P6/2P5/4K3 w - -", {-6 + 0 - 17, 0 - 4 - 12}},
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

TEST(PawnRace, IsWonByWhoQueensFirst) {
  struct Case {
    std::string_view fen;  // without the side to move
    int whiteToMove, blackToMove;
  };
  constexpr Case CASES[] = {
      // The square of the pawn, and a king in it.
      {"8/8/8/P6k/8/8/8/4K3", 425, 425},
      {"8/8/8/P3k3/8/8/8/7K", 425, 0},
      // The double step counts as one move.
      {"8/8/8/8/8/6k1/P7/7K", 375, 0},
      // Own king in front: a move more, and shut in by the defender in the corner nothing.
      {"K7/8/P7/8/8/8/8/7k", 425, 425},
      {"K1k5/8/P7/8/8/8/8/8", 0, 0},
      {"8/K1k5/P7/8/8/8/8/8", 0, 0},
      {"8/4k3/8/8/3KP3/8/8/8", 0, 0},
      // It must reach a key square first; the opposition makes up for the move.
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
      // unless the other king guards it too,
      {"8/8/8/P7/p7/8/1k6/7K", 0, -425},
      // or if the new queen gives check,
      {"4k3/8/7K/P7/4p3/8/8/8", 425, -425},
      // or if it comes two moves earlier.
      {"7k/8/8/8/P7/8/7p/K7", -475, -475},
      // Pieces on both sides: the search will see.
      {"7n/8/8/P6k/8/8/8/N3K3", 0, 0},
      // With a knight White is the only one who races.
      {"8/8/8/P6k/8/8/p7/N3K3", 425, 425},
  };
  for (const Case& test : CASES) {
    for (const Color side : {WHITE, BLACK}) {
      EvaluatedPosition position(std::string(test.fen) + (side == WHITE ? " w - -" : " b - -"));
      EXPECT_EQ(pawnevaluator(position.board, position.evaluator.pawnEntry()),
                side == WHITE ? test.whiteToMove : test.blackToMove)
          << test.fen << " " << side;
    }
  }
}

TEST(KingSafety, WeighsShelterAttackAndActivity) {
  constexpr WorkedOut CASES[] = {
      // Eight units and no pawns: 8 x 16 / 256 of -24 on e1.
      {"r3k1n1/8/8/8/8/8/8/4K3 w - -", -12},
      // Thirteen units: nothing bears on the king. No shelter costs 52, and the place 24.
      {"n1q1k3/8/8/8/8/8/8/4K3 w - -", 8 * 8 * (-52 - 24) / 256},
      // Seven of the shelter gone: -8 x 15 x 7 / 32. The bishop in front of the king mends 2.
      {"r1q1k3/8/8/8/8/8/5P1P/6K1 w - -", -26},
      {"r1q1k3/8/8/8/8/8/5PBP/6K1 w - -", -18},
      // In the middle the shelter is 4. Castling would make it 16 - 3 + 1 or 16 - 4 + 2, less
      // with pieces in the way.
      {"r1q1k3/8/8/8/8/8/PPP2PPP/R3K2R w KQ -", -7},
      {"r1q1k3/8/8/8/8/8/PPP2PPP/RN1QK2R w KQ -", -8 * 15 * (16 - 13) / 32},
      // The queen on d4 looks at e3 with 14 times 8: danger 28, -36 x 7/8 x 12/32.
      {"r3k3/8/8/8/3q4/8/5PPP/6K1 b - -", -11},
      // Queen with 14 times 8, the rook behind her with 12 + 4 times 4 on the open file; base 4
      // and no shelter double it: 96, and 4 for the move. -432 x 7/8 x 12/32, and -60.
      {"4r1k1/8/8/4q3/8/8/8/4K3 w - -", -141 - 60},
  };
  expectTerm(CASES,
             [](Evaluator& evaluator) { return evaluator.breakdown().terms.kingSafety[WHITE]; });
}

}  // namespace
}  // namespace ombrin
