#include "search/search_controller.h"

#include <algorithm>

#include "search/root_search.h"
#include "search/workers.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr LogChannel CONTROL_LOG{"search"};

}  // namespace

SearchController::SearchController(Tt& tt, const Bitbases& bitbases) : state_(tt, bitbases) {
  idle().set();
}

SearchController::~SearchController() {
  stopAndWait();
  state_.waitForWorkers();
  state_.leaving = true;
  for (const auto& thread : state_.threads) {
    thread->wake.set();
    thread->thread.join();
  }
}

void SearchController::boot() {
  if (booted_) {
    logWarn(CONTROL_LOG, "already booted!\n");
    return;
  }
  booted_ = true;
  SearchThread& main = state_.mainThread();
  main.evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  logInfo(CONTROL_LOG, "starting main search thread...\n");
  idle().reset();
  main.thread = Thread::createSuspended([this] { searchThreadMain(); });
  if (!main.thread.running()) {
    print(stderr, "no main search thread: searches hold the command line up\n");
    idle().set();
  }
  main.thread.setPriority(ThreadPriority::BELOW_NORMAL);
  main.thread.resume();
  setThreads(state_.threadCount);
}

void SearchController::searchThreadMain() {
  SearchThread& main = state_.mainThread();
  for (;;) {
    logDebug(CONTROL_LOG, "searchthread: sleep()\n");
    main.wake.reset();
    main.asleep.set();
    main.wake.wait();
    if (state_.leaving) return;
    logDebug(CONTROL_LOG, "searchthread: awoke()\n");
    runSearches();
  }
}

void SearchController::setThreads(int n) {
  idle().wait();
  state_.waitForWorkers();
  n = std::clamp(n, 1, MAX_THREADS);
  state_.threadCount = booted_ ? setWorkerThreads(state_, n) : n;
}

void SearchController::start(const Board& board, const SearchLimits& limits,
                             SearchObserver& observer) {
  if (!state_.mainThread().thread.running()) return search(board, limits, observer);
  accept(board, limits, observer);
  state_.mainThread().wake.set();
}

void SearchController::search(const Board& board, const SearchLimits& limits,
                              SearchObserver& observer) {
  accept(board, limits, observer);
  runSearches();
  idle().set();
}

void SearchController::accept(const Board& board, const SearchLimits& limits,
                              SearchObserver& observer) {
  idle().wait();
  idle().reset();
  {
    const std::lock_guard lock(mutex_);
    stopRequested_ = false;
  }
  state_.clock.start(limits);
  state_.forgetProgress();
  prepare(board, limits, observer);
}

void SearchController::startNext(const Board& board, const SearchLimits& limits,
                                 SearchObserver& observer) {
  next_.board.copyFrom(board);
  next_.limits = limits;
  next_.observer = &observer;
  hasNext_ = true;
  // At once, so that a ponderhit that comes before the search has begun finds it.
  state_.clock.start(limits);
  state_.forgetProgress();
  const std::lock_guard lock(mutex_);
  stopRequested_ = stopping_;
}

void SearchController::prepare(const Board& board, const SearchLimits& limits,
                               SearchObserver& observer) {
  state_.waitForWorkers();
  state_.maxDepth = limits.depth.value_or(0);
  state_.nodeLimit = limits.nodes.value_or(0);
  state_.observer = &observer;
  state_.rootPv.clear();
  state_.rootPvDepth = 0;
  state_.depth = 0;
  SearchThread& main = state_.mainThread();
  main.board.copyFrom(board);
  main.board.makeRoom();
  if (main.evaluator.pawnHash().entries() != PawnHash::FULL_SIZE) {
    main.evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  }
  state_.bitbaseLimits.probe = state_.bitbases.available() ? state_.bitbases.maxMen() - 2 : -1;
  state_.bitbaseLimits.memory = state_.bitbases.available() ? state_.bitbases.memoryMen() - 2 : -1;
  state_.tt.nextGeneration();
  for (const auto& thread : state_.threads) thread->reset();
  state_.rootBoard.copyFrom(main.board);
  state_.idleCount.store(0, std::memory_order_relaxed);
  {
    const std::lock_guard lock(mutex_);
    state_.clearStop();
    if (stopRequested_) state_.requestStop();
  }
  state_.wakeWorkers();
}

void SearchController::runSearches() {
  iterate(state_);
  while (hasNext_) {
    hasNext_ = false;
    prepare(next_.board, next_.limits, *next_.observer);
    iterate(state_);
  }
}

void SearchController::requestStop() {
  const std::lock_guard lock(mutex_);
  stopRequested_ = true;
  state_.requestStop();
}

void SearchController::stopAndWait() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  requestStop();
  idle().wait();
  const std::lock_guard lock(mutex_);
  stopping_ = false;
}

void SearchController::ponderhit(const SearchLimits& limits) {
  if (state_.rootMoveCount.load(std::memory_order_relaxed) == 1 &&
      state_.iteration.load(std::memory_order_relaxed) > 2) {
    logInfo(CONTROL_LOG, "ponderhit & single move!\n");
    stopAndWait();
    return;
  }
  state_.clock.ponderhit(limits);
  if (state_.clock.iterationTimeout()) requestStop();
}

void SearchController::makeReady() {
  if (isIdle()) tt().makeReady();
}

}  // namespace ombrin
