// Are the tables right?
#include <gtest/gtest.h>

#include "library.h"
#include "tiny_solver.h"

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

struct Count {
  int won = 0;
  int drawn = 0;
  int lost = 0;
  bool operator==(const Count&) const = default;
  void add(int value) { ++(value > 0 ? won : value < 0 ? lost : drawn); }
};

// Every position of three men agrees with a solver that shares nothing with the generator.
TEST(Tables, OfThreeMenAgreeWithAnIndependentSolver) {
  const tiny::Solver pawn('P');
  struct Case {
    const tiny::Solver& solver;
    int code;
    Count white;
    Count black;
  };
  const Case cases[] = {
      {pawn.promoted()[0], 2, {144508, 0, 0}, {0, 23048, 200896}},
      {pawn.promoted()[1], 3, {175168, 0, 0}, {0, 22244, 201700}},
      {pawn, 6, {124960, 38368, 0}, {0, 70420, 97604}},
  };
  for (const Case& test : cases) {
    std::array<Count, 2> counts;
    int different = 0;
    for (int i = 0; i < 2 * 64 * 64 * 64; ++i) {
      Query query{i >> 18, {i >> 12 & 63, i >> 6 & 63}, {{{test.code, i & 63}}}};
      const int expected = test.solver.value(query.side, query.king[0], query.king[1], i & 63);
      if (sign(library().probe(query)) != expected) ++different;
      if (expected != tiny::ILLEGAL) counts[static_cast<std::size_t>(query.side)].add(expected);
    }
    EXPECT_EQ(different, 0) << test.code;
    EXPECT_TRUE(counts[0] == test.white && counts[1] == test.black)
        << test.code << ": " << counts[0].won << " " << counts[0].drawn << " " << counts[0].lost
        << ", " << counts[1].won << " " << counts[1].drawn << " " << counts[1].lost;
  }
}

TEST(Tables, FollowFromTheirMoves) {
  const std::string output =
      generate("--verify " + tables() + " KQK KRK KBK KNK KPK KBNK KQKR KRKN");
  EXPECT_EQ(output.find("failed"), std::string::npos) << output;
  EXPECT_NE(output.find("KPK: won 62480, drawn 54394, lost 48802, wrong 0\n"), std::string::npos)
      << output;
}

TEST(Tables, OfPawnsThatMayCaptureInPassingFollowFromTheirMoves) {
  if (!HAS_KPKP) GTEST_SKIP();
  const std::string output = generate("--verify " + tables() + " KPKP");
  EXPECT_NE(output.find("KPKP: won 3213028, drawn 2485090, lost 1737970, wrong 0\n"),
            std::string::npos)
      << output;
}

struct Known {
  const char* fen;
  int value;
};

void expectKnown(std::initializer_list<Known> positions) {
  for (const Known& known : positions) {
    EXPECT_EQ(sign(library().probe(known.fen)), known.value) << known.fen;
  }
}

TEST(Tables, KnowFamousPositions) {
  expectKnown({
      // Bishop and knight mate, also from the wrong corner; not when one of them falls.
      {"k7/8/1K6/8/8/8/8/2BN4 w", 1},
      {"7k/8/8/8/8/8/8/KB5N b", -1},
      {"8/8/8/8/8/1Kbn4/8/k7 w", 0},
      {"8/8/8/8/8/8/2Nk4/K1B5 b", 0},
      // A knight far from its king is lost to the rook; beside it, it holds.
      {"n7/8/1K6/8/3k4/8/8/7R w", 1},
      {"1n1k4/8/3K4/8/8/8/8/1R6 b", 0},
      {"1nk5/8/2K5/8/8/8/8/7R w", 0},
      // The queen beats the rook, whoever is to move, unless the rook is in time, or may offer
      // itself again and again because its king has no move.
      {"1k6/1r6/2K5/Q7/8/8/8/8 w", 1},
      {"1k6/1r6/2K5/Q7/8/8/8/8 b", -1},
      {"8/8/8/8/8/2k5/7r/6KQ b", 0},
      {"7k/5Q2/6K1/8/8/8/8/1r6 b", 0},
      // The opposition.
      {"8/4k3/8/4K3/4P3/8/8/8 w", 0},
      {"8/4k3/8/4K3/4P3/8/8/8 b", -1},
      {"4k3/8/4K3/4P3/8/8/8/8 w", 1},
      {"k7/8/1K6/P7/8/8/8/8 w", 0},
      {"8/8/8/8/p7/1k6/8/K7 w", 0},
  });
}

TEST(Tables, KnowFamousPositionsAgainstAPawn) {
  if (!HAS_KPKP) GTEST_SKIP();
  expectKnown({
      // A pawn one step from promotion holds against the queen on the a and c files only.
      {"8/8/8/8/7K/8/pk6/6Q1 w", 0},
      {"6K1/8/8/8/8/8/1pk5/6Q1 w", 1},
      {"6K1/8/8/8/8/8/2pk4/6Q1 w", 0},
      {"6K1/8/8/8/8/8/3pk3/6Q1 w", 1},
      // The double step would win, were it not for the capture in passing.
      {"7k/8/8/8/Pp6/4K3/8/8 b", -1},
      {"7k/8/8/8/1p6/4K3/P7/8 w", 0},
      {"1k6/8/8/8/4K1pP/8/8/8 b", -1},
      {"1k6/8/8/8/4K1p1/8/7P/8 w", 0},
  });
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
  // The same for the loser, and with the colours exchanged.
  EXPECT_EQ(library().probe("8/8/8/3PK3/8/8/8/k7 b"), -library().probe("8/8/8/3PK3/8/8/8/k7 w"));
  EXPECT_EQ(library().probe("K7/8/8/8/3pk3/8/8/8 w"), -library().probe("8/8/8/3PK3/8/8/8/k7 w"));
}

}  // namespace
}  // namespace bitbase_test
