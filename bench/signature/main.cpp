// Searches a fixed set of positions to a fixed depth, each with an empty table, and prints how many
// nodes that took: the signature of the search. A change that is meant to keep the search as it is
// keeps the number; with one thread it depends on nothing else. Time and speed are printed for the
// record, and with a second argument the same is done by several threads. "check" fails when the
// number is not the one that is known for its depth.
//
//   ombrin_signature check
//   ombrin_signature [depth [threads [verbose]]]

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/positions.h"
#include "board/fen.h"
#include "board/notation.h"
#include "platform/tick.h"
#include "search/search_controller.h"
#include "util/log.h"

int main(int argc, char** argv) {
  using namespace ombrin;
  const bool check = argc > 1 && std::string_view(argv[1]) == "check";
  const int depth = check ? SIGNATURE_DEPTH : argc > 1 ? std::atoi(argv[1]) : 8;
  const int threads = argc > 2 ? std::atoi(argv[2]) : 1;
  const bool verbose = argc > 3;
  logFile = nullptr;

  Tt tt;
  const Bitbases bitbases;
  SearchController search(tt, bitbases);
  search.setThreads(threads);
  search.boot();
  SearchObserver observer;
  const SearchLimits limits{.depth = depth, .infinite = true};

  std::uint64_t nodes = 0;
  std::uint64_t milliseconds = 0;
  for (const char* fen : BENCH_POSITIONS) {
    Board board;
    if (!setFen(board, fen)) return EXIT_FAILURE;
    tt.clear();
    const std::uint64_t start = tickCount();
    search.search(board, limits, observer);
    const std::uint64_t time = tickCount() - start;
    const SearchReport report = search.report();
    nodes += report.nodes;
    milliseconds += time;
    if (verbose) {
      std::printf("%8" PRIu64 " ms %10" PRIu64 " nodes %6i %-8s %s\n", time, report.nodes,
                  report.score.value(), moveToText(report.bestMove).c_str(), fen);
    }
  }
  const std::uint64_t perSecond = 1000 * nodes / (milliseconds == 0 ? 1 : milliseconds);
  std::printf("positions %zu\ndepth     %i\nthreads   %i\nnodes     %" PRIu64 "\ntime      %" PRIu64
              " ms\nspeed     %" PRIu64 " nodes/s\n",
              BENCH_POSITIONS.size(), depth, search.threadCount(), nodes, milliseconds, perSecond);
  if (check && nodes != SIGNATURE) {
    std::printf("expected  %" PRIu64 " nodes\n", SIGNATURE);
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
