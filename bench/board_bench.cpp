// Moves: counting them, generating them by kind, making them, and judging exchanges. Times are per
// move where nothing else is said.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <vector>

#include "bench/positions.h"
#include "board/exchange.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/perft.h"
#include "util/log.h"

namespace ombrin {
namespace {

std::vector<std::unique_ptr<Board>> benchBoards() {
  std::vector<std::unique_ptr<Board>> boards;
  for (const char* fen : BENCH_POSITIONS) {
    auto board = std::make_unique<Board>();
    if (setFen(*board, fen)) boards.push_back(std::move(board));
  }
  return boards;
}

void countPer(benchmark::State& state, const char* name, std::int64_t count) {
  state.counters[name] = benchmark::Counter(
      static_cast<double>(count), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void perft(benchmark::State& state) {
  Board board;
  setFen(board, BENCH_POSITIONS[static_cast<std::size_t>(state.range(0))]);
  std::int64_t leaves = 0;
  for (auto _ : state) {
    leaves += static_cast<std::int64_t>(perftCount(board, 4, NULL_MOVE));
  }
  countPer(state, "per_leaf", leaves);
}
BENCHMARK(perft)->Arg(0)->Arg(22)->Arg(30)->Unit(benchmark::kMillisecond);

using Generator = Move*(const Board&, Move*);

void generate(benchmark::State& state, Generator* generator) {
  const auto boards = benchBoards();
  std::array<Move, MAX_MOVES> moves;
  std::int64_t calls = 0;
  for (auto _ : state) {
    for (const auto& board : boards) {
      benchmark::DoNotOptimize(generator(*board, moves.data()));
      benchmark::ClobberMemory();
    }
    calls += static_cast<std::int64_t>(boards.size());
  }
  countPer(state, "per_call", calls);
}
BENCHMARK_CAPTURE(generate, moves, genMoves);
BENCHMARK_CAPTURE(generate, captures, genCaptures);
BENCHMARK_CAPTURE(generate, quiet, genQuiet);
BENCHMARK_CAPTURE(generate, king_quiet, genKingQuiet);
BENCHMARK_CAPTURE(generate, quiet_checks, genQuietChecks);
BENCHMARK_CAPTURE(generate, discovered_quiet, genDiscoveredQuiet);

// Out of a check by a rook from afar.
void generateEvasions(benchmark::State& state) {
  Board board;
  setFen(board, "r1bq1rk1/pp3ppp/2n1pn2/8/1b1P4/2N1BN2/PP2rPPP/R2QKB1R w KQ -");
  std::array<Move, MAX_MOVES> moves;
  for (auto _ : state) {
    benchmark::DoNotOptimize(genEvasions(board, moves.data(), board.lastMove()));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(generateEvasions);

// Calls visit(board, move) for every legal move of every position.
template <typename Visitor>
void forEveryMove(benchmark::State& state, Visitor visit) {
  const auto boards = benchBoards();
  std::int64_t count = 0;
  for (auto _ : state) {
    for (const auto& board : boards) {
      const MoveList moves = pseudoLegalMoves(*board, NULL_MOVE);
      for (const Move move : moves) visit(*board, move);
      count += static_cast<std::int64_t>(moves.size());
    }
  }
  countPer(state, "per_move", count);
}

void makeAndUnmake(benchmark::State& state) {
  forEveryMove(state, [](Board& board, Move move) {
    const SavedState saved = board.save();
    const Move made = makeMove(board, move);
    benchmark::DoNotOptimize(made);
    if (made) unmakeMove(board, made, saved);
  });
}
BENCHMARK(makeAndUnmake);

void exchange(benchmark::State& state) {
  forEveryMove(state, [](Board& board, Move move) {
    benchmark::DoNotOptimize(see(board, board.side, move));
  });
}
BENCHMARK(exchange);

}  // namespace
}  // namespace ombrin
