#include "search/search_state.h"

#include <algorithm>

namespace ombrin {

SearchState::SearchState(Tt& table, const Bitbases& outside) : tt(table), bitbases(outside) {
  for (int i = 0; i < MAX_THREADS; ++i) threads[i] = std::make_unique<SearchThread>(*this, i);
}

// A thread that clears its own stop flag after an abort does so first and looks at `stopped`
// afterwards; here `stopped` is set before the flags. With all four accesses in one total order,
// either the flag stays set or the thread finds `stopped` and sets it again.
void SearchState::requestStop() {
  stopped.store(true, std::memory_order_seq_cst);
  for (const auto& thread : threads) thread->stop.store(true, std::memory_order_seq_cst);
}

void SearchState::clearStop() {
  stopped.store(false, std::memory_order_relaxed);
  mainThread().stop.store(false, std::memory_order_relaxed);
}

void SearchState::forgetProgress() {
  iteration.store(0, std::memory_order_relaxed);
  rootMoveCount.store(0, std::memory_order_relaxed);
}

void SearchState::waitForWorkers() {
  for (int i = 1; i < MAX_THREADS; ++i) {
    if (threads[i]->thread.running()) threads[i]->asleep.wait();
  }
}

void SearchState::wakeWorkers() {
  for (int i = 1; i < threadCount; ++i) {
    threads[i]->asleep.reset();
    threads[i]->wake.set();
  }
}

bool SearchState::stopIfSpent(const SearchThread& thread) {
  const bool nodesSpent = nodeLimit != 0 && thread.counters.nodes() >= nodeLimit;
  if (!nodesSpent && !clock.isTimeUp()) return false;
  requestStop();
  return true;
}

bool SearchState::stopIfSpent() {
  if (isStopped()) return true;
  if (!clock.isTimeUp() && (nodeLimit == 0 || nodes() < nodeLimit)) return false;
  requestStop();
  return true;
}

std::uint64_t SearchState::nodes() const {
  std::uint64_t sum = 0;
  for (const auto& thread : threads) sum += thread->counters.nodes();
  return sum;
}

unsigned SearchState::hashFull() const {
  std::uint64_t occupied = 0;
  for (const auto& thread : threads) {
    const TtCounters& counters = thread->counters.tt;
    const std::uint64_t stores = counters.stores.value();
    occupied += stores - std::min(stores, counters.overwrites.value());
  }
  return static_cast<unsigned>(1000 * std::min<std::uint64_t>(occupied, tt.entries()) /
                               tt.entries());
}

SearchReport SearchState::report() const {
  return {.depth = depth,
          .selectiveDepth = mainThread().seldepth,
          .score = bestScore,
          .nodes = nodes(),
          .time = clock.elapsed(),
          .bestMove = rootMoves.empty() ? NULL_MOVE : rootMoves.front().move,
          .line = rootPv};
}

}  // namespace ombrin
