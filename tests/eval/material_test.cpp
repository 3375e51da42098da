// Material: imbalances by signature, and what each ending lets a side hope for.
#include <random>

#include "eval/evaluated_position.h"
#include "eval/material_imbalance.h"
#include "eval/scale_factor.h"

namespace ombrin {
namespace {

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
      // 48 for the bishops, 25 for the pair, 69 for more minors: 142 x 700/1024 x 1084/1024.
      {"BB", "", 102},
      // A bishop and a knight: 24 + 5, lone bishop with knight -8, 69: 90 x 700 x 1084.
      {"BN", "", 64},
      // The pair with a rook each, 47, against bishop and knight it is BISHOPS_VS_BISHOP, 43.
      {"RBBPPPPP", "RNNPPPPP", 55},
      {"RBBPPPPP", "RBNPPPPP", 47},
      // With a knight besides and a rook each, 47; 32 for two bishops against 15 for the other.
      {"RBBNPPPPP", "RBNNPPPPP", 51},
      // The exchange: 41 against a bishop with pawns that count -17: 24 x 1200 x 1090.
      {"RPPPP", "BPPPP", 29},
      // Knights differ, 32 less 11: 21 x 1200 x 1072.
      {"RNPPPP", "NNPPPP", 25},
      // Two pawns fewer, 62 less 18; both have 6 units.
      {"RP", "BPPP", 44},
      // Against two minors -7, which count 18 + 10 more: -35 x 1250 x 1084.
      {"RPPP", "BNPPP", -44},
      // Queen against rook and bishop: 2 + 15 - 18.
      {"QPPP", "RBPPP", -1},
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

TEST(MaterialImbalance, TurnsAroundWithTheColoursButForTwoPairs) {
  std::mt19937 random(5);
  const auto anyMen = [&random] {
    Material sum;
    for (const auto& [type, most] :
         {std::pair{PAWN, 8}, {KNIGHT, 3}, {BISHOP, 3}, {ROOK, 3}, {QUEEN, 2}}) {
      for (int n = static_cast<int>(random() % (most + 1)); n > 0; --n) sum += Material::of(type);
    }
    return sum;
  };
  for (int n = 0; n < 20000; ++n) {
    const Material white = anyMen();
    const Material black = anyMen();
    const bool twoPairs = white.bishops() != black.bishops() && !white.sameMajors(black) &&
                          white.bishops() >= 2 && black.bishops() >= 2;
    if (!twoPairs) {
      EXPECT_EQ(materialImbalance(white, black), -materialImbalance(black, white))
          << std::hex << white.word() << " " << black.word();
    }
  }
  // White's pair is asked first: 2 x 24 - 3 x 24 + 35 both times, and the majors' trade.
  EXPECT_GT(materialImbalance(men("RBB"), men("BBB")), 0);
  EXPECT_GT(materialImbalance(men("BBB"), men("RBB")), 0);
}

TEST(ScaleFactor, KnowsWhatCannotBeWon) {
  struct Case {
    std::string_view fen;
    int scale;
  };
  constexpr Case CASES[] = {
      {"4k3/8/8/8/8/8/8/4K3 w - -", 64},
      {"4k3/8/8/8/8/8/8/2N1KN2 w - -", DRAWN},
      {"2n1kn2/8/8/8/8/8/8/4K3 w - -", DRAWN},
      {"4k3/8/8/8/8/8/8/2B1KN2 w - -", 1024},
      {"4k3/8/8/8/8/8/8/2B1KB2 w - -", 1024},
      {"4k3/8/8/8/8/8/8/4KB1B w - -", 256},
      {"4kb1b/8/8/8/8/8/8/4K3 w - -", 256},
      {"4k3/8/8/8/8/8/8/R3K1N1 w - -", 1024},
      {"4k3/7r/8/8/8/8/8/R3K1N1 w - -", 64},    // rook and knight against rook
      {"4k3/7q/8/8/8/8/8/R3K1N1 w - -", 1024},  // only one side has a queen
      {"4k3/7r/8/8/8/8/8/R3K3 w - -", 100},
      {"4k3/p6r/8/8/8/8/8/R3K3 w - -", 700},
      {"4k3/p6r/8/8/8/8/P7/R3K3 w - -", 512},
      {"4k3/ppp4r/8/8/8/8/P7/R3K3 w - -", 1024},  // too many pawns more
      {"4k3/pp5r/8/8/8/8/P7/R3K3 w - -", 800},
      {"4k3/7q/8/8/8/8/P6P/Q3K3 w - -", 1024},
      {"4k3/p6q/8/8/8/8/P7/Q3K3 w - -", 512},
      {"4k3/pp5q/8/8/8/8/PP6/Q3K3 w - -", 768},
      {"4k3/ppp4q/8/8/8/8/PP6/Q3K3 w - -", 1024},
      {"4k3/pp2r2r/8/8/8/8/PP6/Q3K3 w - -", 1024},
      {"4k3/p7/8/8/8/8/8/2N1K3 w - -", 64},     // the knight's side is ahead but has no pawns
      {"4k3/4p3/8/8/8/8/8/R3K3 w - -", 1024},   // a rook is enough
      {"4k3/4n3/8/8/8/8/4P3/N3K3 w - -", 128},  // the last pawn can be had for a piece
      {"4k3/4n3/8/8/8/8/3PP3/N3K3 w - -", 1024},
      {"4k3/4p3/4n3/8/8/8/8/N3K3 w - -", 128},
      // A rook pawn, and a bishop that does or does not cover its promotion square.
      {"6k1/8/8/8/7P/8/8/4KB2 w - -", DRAWN},
      {"7k/8/8/8/7P/7P/8/4KB2 b - -", DRAWN},
      {"6k1/8/8/8/7P/8/8/2B1K3 w - -", 1024},
      {"5k2/8/8/8/7P/8/8/4KB2 w - -", 1024},  // the king is not in front
      {"8/8/8/6kP/8/8/8/4KB2 w - -", DRAWN},  // level with the pawn is enough
      {"8/8/8/7P/6k1/8/8/4KB2 w - -", 1024},
      {"8/8/8/8/7P/8/8/k3KB2 w - -", 1024},
      {"2b1k3/8/8/p7/8/8/8/K7 w - -", DRAWN},
      {"5bk1/8/8/p7/8/8/8/K7 w - -", 1024},
      {"k7/8/8/8/P7/8/8/K7 w - -", DRAWN},
      {"k7/p7/8/8/8/8/P7/KB6 w - -", 1024},  // no passed pawn, no such draw
      {"k7/8/8/8/P6P/8/8/KB6 w - -", 1024},
      // Bishops of opposite colours, and of one.
      {"4k3/p4b2/8/8/8/8/P4B2/4K3 w - -", 444},
      {"4k3/p3b3/8/8/8/8/P4B2/4K3 w - -", 1024},
      {"4k3/p4n2/8/8/8/8/P4B2/4K3 w - -", 1024},
  };
  for (const Case& test : CASES) {
    EvaluatedPosition position(test.fen);
    EXPECT_EQ(position.evaluator.breakdown().scale, test.scale) << test.fen;
  }
}

}  // namespace
}  // namespace ombrin
