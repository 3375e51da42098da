#include "search/workers.h"

#include <algorithm>
#include <mutex>

#include "search/split_node.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr LogChannel SMP_LOG{"smp"};

// The life of a worker thread.
void workerMain(SearchThread& thread) {
  SearchState& state = thread.state;
  for (;;) {
    logDebug(SMP_LOG, "thread %i: sleep()\n", thread.index);
    thread.wake.reset();
    thread.asleep.set();
    thread.wake.wait();
    if (state.leaving) return;
    logDebug(SMP_LOG, "thread %i: awoke()\n", thread.index);
    thread.board.copyFrom(state.rootBoard);
    for (;;) {
      {
        const std::lock_guard lock(thread.lock);
        thread.abortMark = 0;
        resume(thread);
      }
      if (thread.isStopped()) break;
      joinSplit(thread);
    }
  }
}

}  // namespace

int setWorkerThreads(SearchState& state, int n) {
  n = std::clamp(n, 1, SearchState::MAX_THREADS);
  int started = 0;
  for (int i = 1; i < n; ++i) {
    SearchThread& thread = *state.threads[i];
    thread.evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
    if (thread.thread.running()) continue;
    logInfo(SMP_LOG, "starting worker%i...\n", i);
    thread.asleep.reset();
    thread.thread = Thread::createSuspended([&thread] { workerMain(thread); });
    if (!thread.thread.running()) {
      print(stderr, "no thread for worker%i\n", i);
      n = i;
      break;
    }
    thread.thread.setPriority(ThreadPriority::BELOW_NORMAL);
    thread.thread.resume();
    ++started;
  }
  logInfo(SMP_LOG, "started %i new worker threads\n", started);

  int parked = 0;
  for (int i = n; i < SearchState::MAX_THREADS; ++i) {
    SearchThread& thread = *state.threads[i];
    thread.evaluator.pawnHash().resize(1);
    if (!thread.thread.running()) continue;
    thread.stop.store(true, std::memory_order_seq_cst);
    ++parked;
  }
  if (parked > 0) logInfo(SMP_LOG, "put %i threads to sleep\n", parked);
  return n;
}

}  // namespace ombrin
