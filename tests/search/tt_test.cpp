#include "search/tt.h"

#include <gtest/gtest.h>

#include "search/search_fixture.h"

namespace ombrin {
namespace {

constexpr Move MOVE{E1, G1};

class TtTest : public testing::Test, Silence {
 protected:
  void SetUp() override { at(1, 0); }

  // Makes the board a position with that key whose cluster begins at that index.
  void at(std::uint32_t key, std::uint32_t index) {
    board->hash = static_cast<std::uint64_t>(key) << 32 | index;
  }
  void store(int depth, Bound bound, int score) {
    tt.store(*board, {MOVE, score, depth, bound}, counters);
  }
  // What the table holds for the board; depth -999 for nothing.
  TtEntry held() {
    TtEntry entry;
    if (!tt.probe(*board, entry)) entry.depth = -999;
    return entry;
  }

  Tt tt{256};
  TtCounters counters;
  std::unique_ptr<Board> board = boardOf("4k3/8/8/8/8/8/8/4K2R w K -");
};

TEST_F(TtTest, TakesPowersOfTwoOfAtLeast256Kilobytes) {
  const struct {
    std::size_t kb;
    std::size_t bytes;
  } cases[] = {{0, 256},     {1, 256},       {200, 256},     {300, 256},      {1000, 512},
               {1024, 1024}, {65535, 32768}, {65536, 65536}, {524288, 524288}};
  for (const auto& [kb, expected] : cases) {
    Tt table(kb);
    EXPECT_EQ(table.bytes(), expected * 1024) << kb;
    EXPECT_EQ(table.entries(), expected * 64) << kb;
  }
}

// Emptying is shared by as many threads as there are processors when the table is big.
TEST_F(TtTest, KeepsWhatItHoldsUntilItIsClearedOrResized) {
  tt.resize(Tt::DEFAULT_KB);
  const auto slots = static_cast<std::uint32_t>(tt.entries());
  const auto forEachPlace = [&](const auto& look) {
    for (std::uint32_t key = 1; key <= 64; ++key) {
      at(key, slots / 64 * key - 8);
      look(static_cast<int>(key));
    }
  };
  const auto expectKept = [&](bool kept) {
    forEachPlace([&](int key) { EXPECT_EQ(held().depth, kept ? key : -999); });
  };
  tt.nextGeneration();
  forEachPlace([&](int key) { store(key, TT_EXACT, 0); });
  tt.makeReady();
  tt.resize(Tt::DEFAULT_KB + 1);
  expectKept(true);
  tt.clear();
  expectKept(false);
  forEachPlace([&](int key) { store(key, TT_EXACT, 0); });
  tt.resize(Tt::DEFAULT_KB / 2);
  expectKept(false);
  tt.resize(Tt::DEFAULT_KB);
  tt.makeReady();
  expectKept(false);
}

TEST_F(TtTest, GivesBackWhatWasStored) {
  const struct {
    int score;
    int depth;
    Bound bound;
  } cases[] = {{0, 0, TT_EXACT},      {29999, 1, TT_LOWER}, {-30000, -4, TT_UPPER},
               {-1, 32767, TT_EXACT}, {32767, 2, TT_LOWER}, {-32768, -32768, TT_UPPER}};
  std::uint32_t key = 100;
  for (const auto& [score, depth, bound] : cases) {
    ++key;
    at(key, key * 4);
    store(depth, bound, score);
    const TtEntry entry = held();
    EXPECT_EQ(entry.score, score);
    EXPECT_EQ(entry.depth, depth);
    EXPECT_EQ(entry.bound, bound);
    EXPECT_EQ(entry.move, MOVE);
  }
  EXPECT_EQ(counters.stores.value(), std::size(cases));
}

TEST_F(TtTest, ImprovesAnEntryInPlace) {
  const struct {
    const char* what;
    TtEntry old;
    TtEntry offered;
    bool replaced;
  } cases[] = {
      {"same depth", {MOVE, 10, 5, TT_EXACT}, {MOVE, 1, 5, TT_UPPER}, true},
      {"deeper", {MOVE, 10, 5, TT_EXACT}, {MOVE, 1, 6, TT_LOWER}, true},
      {"exact stays", {MOVE, 10, 5, TT_EXACT}, {MOVE, 20, 4, TT_EXACT}, false},
      {"higher lower bound", {MOVE, 10, 5, TT_LOWER}, {MOVE, 11, 4, TT_LOWER}, true},
      {"equal lower bound", {MOVE, 10, 5, TT_LOWER}, {MOVE, 10, 4, TT_LOWER}, false},
      {"exact over lower", {MOVE, 10, 5, TT_LOWER}, {MOVE, 20, 4, TT_EXACT}, false},
      {"upper over lower", {MOVE, 10, 5, TT_LOWER}, {MOVE, 20, 4, TT_UPPER}, false},
      {"lower upper bound", {MOVE, 10, 5, TT_UPPER}, {MOVE, 9, 4, TT_UPPER}, true},
      {"exact below upper", {MOVE, 10, 5, TT_UPPER}, {MOVE, 9, 4, TT_EXACT}, true},
      {"equal upper bound", {MOVE, 10, 5, TT_UPPER}, {MOVE, 10, 4, TT_UPPER}, false},
      {"lower over upper", {MOVE, 10, 5, TT_UPPER}, {MOVE, 9, 4, TT_LOWER}, false},
  };
  for (const auto& [what, old, offered, replaced] : cases) {
    tt.clear();
    counters = {};
    tt.store(*board, old, counters);
    tt.store(*board, offered, counters);
    EXPECT_EQ(held().score, replaced ? offered.score : old.score) << what;
    EXPECT_EQ(held().depth, replaced ? offered.depth : old.depth) << what;
    EXPECT_EQ(counters.upd.value(), replaced ? 1U : 0U) << what;
    EXPECT_EQ(counters.stores.value(), 1U) << what;
  }
}

// Keys 1 to 4 fill the cluster in its order.
TEST_F(TtTest, ReplacesTheEntryOfLeastWorth) {
  const struct {
    const char* what;
    int depths[4];
    int old;  // that many of the first entries belong to an earlier search
    std::uint32_t victim;
    std::uint64_t overwrites;
  } cases[] = {
      {"the shallowest", {4, 3, 2, 3}, 0, 3, 1},
      {"the first of equals", {5, 2, 7, 2}, 0, 2, 1},
      {"an old one before a shallow one", {40, 1, 1, 1}, 1, 1, 0},
      {"the shallowest old one", {9, 8, 8, 1}, 3, 2, 0},
  };
  for (const auto& [what, depths, old, victim, overwrites] : cases) {
    tt.clear();
    for (int i = 0; i < 4; ++i) {
      if (i == old) tt.nextGeneration();
      at(static_cast<std::uint32_t>(i + 1), 20);
      store(depths[i], TT_EXACT, i);
    }
    counters = {};
    at(99, 20);
    store(0, TT_LOWER, 99);
    EXPECT_EQ(held().score, 99) << what;
    EXPECT_EQ(counters.overwrites.value(), overwrites) << what;
    for (std::uint32_t key = 1; key <= 4; ++key) {
      at(key, 20);
      EXPECT_EQ(held().depth == -999, key == victim) << what << ", entry " << key;
    }
  }
}

TEST_F(TtTest, ForgetsOnePosition) {
  store(3, TT_EXACT, 10);
  at(2, 0);
  tt.erase(*board);
  store(4, TT_EXACT, 20);
  at(1, 0);
  EXPECT_EQ(held().score, 10);
  tt.erase(*board);
  EXPECT_EQ(held().depth, -999);
  at(2, 0);
  EXPECT_EQ(held().score, 20);
  board->side = BLACK;
  EXPECT_EQ(held().depth, -999) << "the sides are told apart";
}

// The stored move captures by index; another piece may stand there when the position comes again.
TEST_F(TtTest, PutsTheCapturedPieceRight) {
  const auto victims = boardOf("4k3/8/8/2nnb3/3P4/8/8/4K3 w - -");
  const Square knight = Square::at(2, 4);
  const Square other = Square::at(3, 4);
  const Square bishop = Square::at(4, 4);
  const Square pawn = Square::at(3, 3);
  const Move taken(pawn, knight, victims->at(knight));
  const auto probed = [&](Move move) {
    tt.store(*victims, {move, 0, 1, TT_LOWER}, counters);
    TtEntry entry;
    EXPECT_TRUE(tt.probe(*victims, entry));
    return entry.move;
  };
  EXPECT_EQ(probed(taken), taken);
  EXPECT_EQ(probed(taken.withCaptured(victims->at(other))), taken);
  EXPECT_EQ(probed(taken.withCaptured(victims->at(bishop))), NULL_MOVE);
  EXPECT_EQ(probed(Move(pawn, pawn + UP)), Move(pawn, pawn + UP));
}

}  // namespace
}  // namespace ombrin
