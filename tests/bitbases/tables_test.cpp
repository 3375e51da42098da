// Are the tables right?
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "library.h"

namespace bitbase_test {
namespace {

const Library& library() {
  static const Library LIBRARY = [] {
    Library loaded(makeDirectory("whole"));
    loaded.load(tables());
    return loaded;
  }();
  return LIBRARY;
}

int sign(int score) {
  return score == NOT_HELD ? NOT_HELD : (score > 0) - (score < 0);
}

// Every question about three men. The numbers and the signature were found to be those of a solver
// that knew only the rules, no symmetry and no retrograde steps.
TEST(Tables, OfThreeMenHaveTheirSignature) {
  struct Case {
    int code;
    std::array<int, 6> counts;  // lost, drawn and won; first for White to move
    std::uint64_t signature;
  };
  constexpr Case CASES[] = {
      {2, {0, 0, 144508, 200896, 23048, 0}, 7594589402012973008U},
      {3, {0, 0, 175168, 201700, 22244, 0}, 3755660795234617380U},
      {6, {0, 38368, 124960, 97604, 70420, 0}, 4042135683182827668U},
  };
  for (const Case& test : CASES) {
    std::array<int, 6> counts{};
    std::uint64_t signature = 0;
    for (int i = 0; i < 2 * 64 * 64 * 64; ++i) {
      const int side = i >> 18;
      const int value =
          sign(library().probe({side, {i >> 12 & 63, i >> 6 & 63}, {{{test.code, i & 63}}}}));
      if (value != NOT_HELD) ++counts.at(static_cast<std::size_t>(3 * side + 1 + value));
      signature = (signature ^ static_cast<std::uint32_t>(value)) * 0x100000001b3;
    }
    EXPECT_EQ(counts, test.counts) << test.code;
    EXPECT_EQ(signature, test.signature) << test.code;
  }
}

TEST(Tables, FollowFromTheirMoves) {
  const std::string output = generate("--verify " + tables() + " 3 " + std::string(MATERIALS));
  EXPECT_EQ(output.find("failed"), std::string::npos) << output;
  // Of either side to move: won, drawn and lost.
  std::map<std::string, std::array<long, 6>> numbers;
  std::ifstream record(tables() + "/tables.txt");
  for (std::string line; std::getline(record, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    for (long& number : numbers[name]) words >> number;
  }
  const auto [w1, d1, l1, w2, d2, l2] = numbers["KPK"];
  EXPECT_EQ((std::array{w1 + w2, d1 + d2, l1 + l2}), (std::array{62480L, 54394L, 48802L}));
  if (!HAS_ALL) return;
  const auto [w3, d3, l3, w4, d4, l4] = numbers["KPKP"];
  EXPECT_EQ((std::array{w3 + w4, d3 + d4, l3 + l4}), (std::array{3213028L, 2485090L, 1737970L}));
  EXPECT_EQ(w3, w4) << "the sides are alike";
}

TEST(Tables, KnowFamousPositions) {
  struct Known {
    const char* fen;
    int value;
  };
  std::vector<Known> positions = {
      // The queen beats the rook, whoever is to move, unless the rook may offer itself again and
      // again because its king has no move.
      {"1k6/1r6/2K5/Q7/8/8/8/8 w", 1},
      {"1k6/1r6/2K5/Q7/8/8/8/8 b", -1},
      {"7k/5Q2/6K1/8/8/8/8/1r6 b", 0},
      // The opposition.
      {"8/4k3/8/4K3/4P3/8/8/8 w", 0},
      {"8/4k3/8/4K3/4P3/8/8/8 b", -1},
  };
  const std::vector<Known> others = {
      // Bishop and knight mate, also from the wrong corner; not when one of them falls.
      {"k7/8/1K6/8/8/8/8/2BN4 w", 1},
      {"7k/8/8/8/8/8/8/KB5N b", -1},
      {"8/8/8/8/8/1Kbn4/8/k7 w", 0},
      // A knight far from its king is lost to the rook; beside it, it holds.
      {"n7/8/1K6/8/3k4/8/8/7R w", 1},
      {"1nk5/8/2K5/8/8/8/8/7R w", 0},
      // A pawn one step from promotion holds against the queen on the c file, not on the d.
      {"6K1/8/8/8/8/8/2pk4/6Q1 w", 0},
      {"6K1/8/8/8/8/8/3pk3/6Q1 w", 1},
      // The double step would win, were it not for the capture in passing.
      {"7k/8/8/8/Pp6/4K3/8/8 b", -1},
      {"7k/8/8/8/1p6/4K3/P7/8 w", 0},
  };
  if (HAS_ALL) positions.insert(positions.end(), others.begin(), others.end());
  for (const Known& known : positions) {
    EXPECT_EQ(sign(library().probe(known.fen)), known.value) << known.fen;
  }
}

TEST(Tables, ScoreWinsWithPawnsByTheirProgress) {
  // From the best for the winner to the worst.
  int last = 29000;
  for (const char* fen : {"8/3PK3/8/8/8/8/8/k7 w", "8/8/3PK3/8/8/8/8/k7 w", "8/8/8/3PK3/8/8/8/k7 w",
                          "8/8/8/8/3PK3/8/8/k7 w", "8/8/8/8/8/3PK3/8/k7 w"}) {
    const int score = library().probe(fen);
    EXPECT_LT(score, last) << fen;
    EXPECT_GT(score, 3100) << fen;
    last = score;
  }
  if (HAS_ALL) {  // the other side's pawn counts against it
    EXPECT_GT(library().probe("8/3PK3/8/8/7p/8/8/k7 w"), library().probe("8/3PK3/8/8/8/7p/8/k7 w"));
  }
  // The same for the loser, and with the colours exchanged.
  EXPECT_EQ(library().probe("8/8/8/3PK3/8/8/8/k7 b"), -library().probe("8/8/8/3PK3/8/8/8/k7 w"));
  EXPECT_EQ(library().probe("K7/8/8/8/3pk3/8/8/8 w"), -library().probe("8/8/8/3PK3/8/8/8/k7 w"));
}

}  // namespace
}  // namespace bitbase_test
