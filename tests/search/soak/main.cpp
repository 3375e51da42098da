// Searches with 2, 4 and 8 threads for as many minutes as it is told, stopped, turned from
// pondering to thinking, or left to end at random moments, with the table resized and the number of
// threads changed in between. Ends with status 1 when a search gave no legal move, when a stop took
// longer than it may, or when an idle engine used the processor; hangs when a thread is lost. Meant
// to be run under the thread sanitizer as well.
//
//   thread_soak [minutes [milliseconds that a stop may take]]

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <thread>
#include <vector>

#include "bench/positions.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "platform/event.h"
#include "platform/tick.h"
#include "search/search_controller.h"
#include "util/log.h"

namespace ombrin {
namespace {

struct Listener : SearchObserver {
  void finished(const SearchReport&) override { ended.set(); }
  void reportBestLine(const SearchReport&) override { ++reports; }
  void reportCurrentMove(const RootMoveReport&) override { ++reports; }
  Event ended;
  std::atomic<int> reports{0};
};

struct Soak {
  explicit Soak(std::uint64_t milliseconds) : maxStop(milliseconds) { search.boot(); }

  void run(std::uint64_t until) {
    while (tickCount() < until && good) round();
    std::printf("%i searches, %i stops, %i ponderhits, %i left alone\n", searches,
                static_cast<int>(stops.size()), ponderhits, leftAlone);
    if (!stops.empty()) {
      std::sort(stops.begin(), stops.end());
      std::printf("stops answered after %i ms (median), %i ms (99 of 100), %i ms (longest)\n",
                  stops[stops.size() / 2], stops[stops.size() * 99 / 100], stops.back());
    }
  }

  // A few searches with one number of threads and one size of table.
  void round() {
    constexpr int THREADS[] = {2, 4, 8};
    search.setThreads(THREADS[random() % 3]);
    tt.resize(std::size_t{1} << (8 + random() % 8));
    if (random() % 4 == 0) tt.clear();
    const int count = 5 + static_cast<int>(random() % 20);
    for (int i = 0; i < count && good; ++i) searchOnce();
    if (random() % 16 == 0) checkIdle();
  }

  void searchOnce() {
    ++searches;
    Board board;
    setFen(board, BENCH_POSITIONS[random() % BENCH_POSITIONS.size()]);
    SearchLimits limits{.moveTime = static_cast<int>(random() % 60)};
    const auto way = random() % 4;
    limits.infinite = way != 3;
    listener.ended.reset();
    search.start(board, limits, listener);
    if (way == 3) {
      ++leftAlone;
      listener.ended.wait();
    } else {
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 40000));
      if (way == 2) {
        ++ponderhits;
        search.ponderhit(limits);
        if (random() % 2 == 0) listener.ended.wait();
      }
    }
    const std::uint64_t before = tickCount();
    search.stopAndWait();
    const std::uint64_t took = tickCount() - before;
    if (way != 3) stops.push_back(static_cast<int>(took));
    if (took > maxStop) fail("a stop took too long");
    if (!isMove(board, search.report().bestMove, board.lastMove())) fail("no legal move");
  }

  // Asleep, the process may not use the processor.
  void checkIdle() {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    if (used > 0.02) fail("an idle engine is busy");
  }

  void fail(const char* what) {
    std::printf("FAILED: %s (search %i, %i threads)\n", what, searches, search.threadCount());
    good = false;
  }

  std::uint64_t maxStop;
  bool good = true;
  int searches = 0;
  int ponderhits = 0;
  int leftAlone = 0;
  std::vector<int> stops;
  std::mt19937 random{20240229};
  Listener listener;
  Tt tt;
  Bitbases bitbases;
  SearchController search{tt, bitbases};
};

}  // namespace
}  // namespace ombrin

int main(int argc, char** argv) {
  const double minutes = argc > 1 ? std::atof(argv[1]) : 10;
  const int maxStop = argc > 2 ? std::atoi(argv[2]) : 1000;
  ombrin::logFile = nullptr;
  ombrin::Soak soak(static_cast<std::uint64_t>(maxStop));
  soak.run(ombrin::tickCount() + static_cast<std::uint64_t>(minutes * 60000));
  return soak.good ? EXIT_SUCCESS : EXIT_FAILURE;
}
