// The transposition table, and whole searches. Table times are per probe or store, with keys spread
// over all of it, so that most of them miss the caches.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

#include "bench/positions.h"
#include "board/fen.h"
#include "search/search_controller.h"
#include "util/log.h"

namespace ombrin {
namespace {

// Steps through keys as a search would meet them: without any order.
class Keys {
 public:
  explicit Keys(Board& board) : board_(board) { setFen(board, BENCH_POSITIONS[10]); }
  void next() { board_.hash = (state_ += 0x9e3779b97f4a7c15) * 0xbf58476d1ce4e5b9; }

 private:
  Board& board_;
  std::uint64_t state_ = 1;
};

void tableProbe(benchmark::State& state) {
  logFile = nullptr;
  const Tt tt(static_cast<std::size_t>(state.range(0)) * 1024);
  Board board;
  Keys keys(board);
  TtEntry entry;
  for (auto _ : state) {
    keys.next();
    benchmark::DoNotOptimize(tt.probe(board, entry));
  }
}
BENCHMARK(tableProbe)->Arg(1)->Arg(64);

void tableStore(benchmark::State& state) {
  logFile = nullptr;
  Tt tt(static_cast<std::size_t>(state.range(0)) * 1024);
  TtCounters counters;
  Board board;
  Keys keys(board);
  for (auto _ : state) {
    keys.next();
    tt.store(board, {NULL_MOVE, 1, 3, TT_LOWER}, counters);
  }
}
BENCHMARK(tableStore)->Arg(1)->Arg(64);

// Positions searched to a fixed depth with an empty table; the number of nodes is a signature of
// the search.
void search(benchmark::State& state) {
  logFile = nullptr;
  Tt tt;
  const Bitbases bitbases;
  SearchController controller(tt, bitbases);
  controller.boot();
  SearchObserver observer;
  const SearchLimits limits{.depth = 7, .infinite = true};
  std::uint64_t nodes = 0;
  for (auto _ : state) {
    for (const char* fen : BENCH_POSITIONS) {
      Board board;
      setFen(board, fen);
      tt.clear();
      controller.search(board, limits, observer);
      nodes += controller.nodes();
    }
  }
  const auto total = static_cast<double>(nodes);
  state.counters["nodes"] = benchmark::Counter(total, benchmark::Counter::kAvgIterations);
  state.counters["nps"] = benchmark::Counter(total, benchmark::Counter::kIsRate);
}
BENCHMARK(search)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ombrin
