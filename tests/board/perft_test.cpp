#include "board/perft.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "board/fen.h"

namespace ombrin {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int FEWER_PLIES = 1;
#else
constexpr int FEWER_PLIES = 0;
#endif

TEST(Perft, EqualsPublishedCounts) {
  struct Case {
    std::string_view fen;
    std::vector<std::uint64_t> counts;  // by depth from 1
  };
  const Case cases[] = {
      {START_FEN, {20, 400, 8902, 197281, 4865609}},
      // Castling, pins, en passant.
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
       {48, 2039, 97862, 4085603}},
      // En passant that bares the king along the rank.
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", {14, 191, 2812, 43238, 674624}},
      // Promotions with capture, discovered checks.
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -", {6, 264, 9467, 422333}},
      {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -", {44, 1486, 62379, 2103487}},
      {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - -",
       {46, 2079, 89890, 3894594}},
      // Promotions of every kind.
      {"n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - -", {24, 496, 9483, 182838, 3605103}},
  };
  Board board;
  for (const Case& test : cases) {
    ASSERT_TRUE(setFen(board, test.fen));
    EXPECT_EQ(perftCount(board, 0, board.lastMove()), test.counts[0]);
    const auto deepest = static_cast<int>(test.counts.size()) - FEWER_PLIES;
    for (int depth = 1; depth <= deepest; ++depth) {
      EXPECT_EQ(perftCount(board, depth, board.lastMove()), test.counts[depth - 1])
          << test.fen << " depth " << depth;
    }
  }
}

}  // namespace
}  // namespace ombrin
