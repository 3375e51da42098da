// Probing the endgame bitbases of the directory that the environment variable OMBRIN_EGBB_DIR
// names. Times are per probe, over the positions of random games.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <random>
#include <span>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "egbb/bitbases.h"

namespace ombrin {
namespace {

// The positions of random games from one, in which nothing is captured or promoted.
std::vector<std::unique_ptr<Board>> wander(std::string_view fen) {
  constexpr std::size_t COUNT = 2000;
  std::vector<std::unique_ptr<Board>> boards;
  std::minstd_rand random(1);
  Board board;
  setFen(board, fen);
  for (int dice = 0; boards.size() < COUNT; ++dice) {
    const MoveList legal = legalMoves(board);
    const Move move = legal.empty() ? Move() : legal[random() % legal.size()];
    if (move.isNull() || dice % 50 == 0) {
      setFen(board, fen);
      continue;
    }
    if (move.isCapture() || move.isPromotion()) continue;
    const SavedState saved = board.save();
    const Move made = makeMove(board, move);
    // The next moves depend on whether this one gives check.
    unmakeMove(board, move, saved);
    makeMove(board, made);
    boards.push_back(std::make_unique<Board>());
    boards.back()->copyFrom(board);
  }
  return boards;
}

void probePositions(benchmark::State& state, std::string_view fen) {
  const char* directory = std::getenv("OMBRIN_EGBB_DIR");
  Bitbases bitbases;
  if (directory == nullptr || !bitbases.open(directory) ||
      !bitbases.load(Bitbases::DEFAULT_CACHE_MB)) {
    state.SkipWithError("OMBRIN_EGBB_DIR names no bitbases");
    return;
  }
  const auto boards = wander(fen);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bitbases.probe(*boards[next]));
    next = (next + 1) % boards.size();
  }
}

BENCHMARK_CAPTURE(probePositions, KPK, "8/8/8/3k4/8/8/P7/K7 w - -");
BENCHMARK_CAPTURE(probePositions, KQKR, "8/8/3r4/3k4/8/8/8/KQ6 w - -");
BENCHMARK_CAPTURE(probePositions, KBNK, "8/8/8/3k4/8/8/8/KBN5 w - -");
BENCHMARK_CAPTURE(probePositions, KRKP, "8/2p5/8/3k4/8/8/8/KR6 w - -");
BENCHMARK_CAPTURE(probePositions, KRBKR, "8/8/3r4/3k4/8/8/8/KRB5 w - -");
BENCHMARK_CAPTURE(probePositions, KRPKR, "8/8/3r4/3k4/8/8/P7/KR6 w - -");

}  // namespace
}  // namespace ombrin
