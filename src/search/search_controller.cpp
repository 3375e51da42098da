#include "search/search_controller.h"

#include <algorithm>
#include <mutex>

#include "platform/event.h"
#include "platform/thread.h"
#include "search/parallel_search.h"
#include "search/root_search.h"
#include "search/search_state.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr LogChannel CONTROL_LOG{"search"};

}  // namespace

struct SearchController::Implementation {
  Implementation(SearchController& controller, Tt& tt, const Bitbases& bitbases, SearchClock& clock)
      : owner(controller), state(tt, bitbases, clock) {
    idle().set();
  }

  void searchThreadMain();
  // Makes the state ready for a search of that position. Only while no search runs.
  void prepare(const Board& board);
  // Runs the search that has been prepared, and those that its observer asks for.
  void runSearches();
  // Stops the current search, or the one that is about to begin.
  void requestStop();

  // Signalled while no search runs and none is about to.
  Event& idle() { return state.mainThread().asleep; }

  SearchController& owner;
  SearchState state;
  std::atomic<SearchObserver*> listener{nullptr};
  bool booted = false;

  // What startNext leaves for its own thread.
  Board nextBoard;
  bool hasNext = false;

  // Guards the two flags, and with them the moment at which a new search forgets the requests made
  // to the one before, so that none gets lost in between.
  std::mutex mutex;
  bool stopping = false;       // stopAndWait is waiting: whatever begins is to be stopped
  bool stopRequested = false;  // the current search is, or the one about to begin
};

void SearchController::Implementation::searchThreadMain() {
  SearchThread& main = state.mainThread();
  for (;;) {
    logDebug(CONTROL_LOG, "searchthread: sleep()\n");
    main.wake.reset();
    main.asleep.set();
    main.wake.wait();
    if (state.leaving) return;
    logDebug(CONTROL_LOG, "searchthread: awoke()\n");
    runSearches();
  }
}

void SearchController::Implementation::prepare(const Board& board) {
  state.maxDepth = owner.maxDepth;
  state.quiet = owner.quiet;
  state.observer = listener;
  state.rootPv.clear();
  state.rootPvDepth = 0;
  state.depth = 0;
  SearchThread& main = state.mainThread();
  main.board.copyFrom(board);
  main.board.makeRoom();
  if (main.evaluator.pawnHash().entries() != PawnHash::FULL_SIZE) {
    main.evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  }
  state.bitbaseLimits.probe = state.bitbases.available() ? state.bitbases.maxMen() - 2 : -1;
  state.bitbaseLimits.memory = state.bitbases.available() ? state.bitbases.memoryMen() - 2 : -1;
  state.tt.nextGeneration();
  state.waitForWorkers();
  for (const auto& thread : state.threads) thread->reset();
  state.rootBoard.copyFrom(main.board);
  state.idleCount.store(0, std::memory_order_relaxed);
  {
    const std::lock_guard lock(mutex);
    state.clearStop();
    if (stopRequested) state.requestStop();
  }
  state.wakeWorkers();
}

void SearchController::Implementation::runSearches() {
  iterate(state);
  while (hasNext) {
    hasNext = false;
    prepare(nextBoard);
    iterate(state);
  }
}

void SearchController::Implementation::requestStop() {
  const std::lock_guard lock(mutex);
  stopRequested = true;
  state.requestStop();
}

SearchController::SearchController(Tt& tt, const Bitbases& bitbases, SearchClock& clock)
    : implementation_(std::make_unique<Implementation>(*this, tt, bitbases, clock)) {}

SearchController::~SearchController() {
  stopAndWait();
  SearchState& state = implementation_->state;
  state.waitForWorkers();
  state.leaving = true;
  for (const auto& thread : state.threads) {
    thread->wake.set();
    thread->thread.join();
  }
}

void SearchController::boot() {
  Implementation& self = *implementation_;
  if (self.booted) {
    logWarn(CONTROL_LOG, "already booted!\n");
    return;
  }
  self.booted = true;
  self.state.mainThread().evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  logInfo(CONTROL_LOG, "starting main search thread...\n");
  self.idle().reset();
  self.state.mainThread().thread = Thread::createSuspended([&self] { self.searchThreadMain(); });
  if (!self.state.mainThread().thread.running()) {
    print(stderr, "no main search thread: searches hold the command line up\n");
    self.idle().set();
  }
  self.state.mainThread().thread.setPriority(ThreadPriority::BELOW_NORMAL);
  self.state.mainThread().thread.resume();
  setThreads(self.state.threadCount);
}

void SearchController::setThreads(int n) {
  Implementation& self = *implementation_;
  self.idle().wait();
  self.state.waitForWorkers();
  n = std::clamp(n, 1, MAX_THREADS);
  self.state.threadCount = self.booted ? setWorkerThreads(self.state, n) : n;
}

int SearchController::threadCount() const {
  return implementation_->state.threadCount;
}

void SearchController::start(const Board& board, bool async) {
  Implementation& self = *implementation_;
  self.idle().wait();
  self.idle().reset();
  {
    const std::lock_guard lock(self.mutex);
    self.stopRequested = false;
  }
  self.state.clock.reset();
  self.state.forgetProgress();
  self.prepare(board);
  if (async && self.state.mainThread().thread.running()) {
    self.state.mainThread().wake.set();
  } else {
    self.runSearches();
    self.idle().set();
  }
}

void SearchController::startNext(const Board& board) {
  Implementation& self = *implementation_;
  self.nextBoard.copyFrom(board);
  self.hasNext = true;
  self.state.clock.reset();
  self.state.forgetProgress();
  const std::lock_guard lock(self.mutex);
  self.stopRequested = self.stopping;
}

void SearchController::stopAndWait() {
  Implementation& self = *implementation_;
  {
    const std::lock_guard lock(self.mutex);
    self.stopping = true;
  }
  self.requestStop();
  self.idle().wait();
  const std::lock_guard lock(self.mutex);
  self.stopping = false;
}

void SearchController::ponderhit() {
  Implementation& self = *implementation_;
  SearchState& state = self.state;
  if (state.rootMoveCount.load(std::memory_order_relaxed) == 1 &&
      state.iteration.load(std::memory_order_relaxed) > 2) {
    logInfo(CONTROL_LOG, "ponderhit & single move!\n");
    stopAndWait();
    return;
  }
  state.clock.ponderhit();
  if (state.clock.iterationTimeout()) self.requestStop();
}

bool SearchController::isIdle() const {
  return implementation_->idle().isSet();
}

void SearchController::makeReady() {
  if (isIdle()) tt().makeReady();
}

void SearchController::setListener(SearchObserver* listener) {
  implementation_->listener = listener;
}

Move SearchController::bestMove() const {
  const std::vector<RootMove>& moves = implementation_->state.rootMoves;
  return moves.empty() ? NULL_MOVE : moves.front().move;
}

Move SearchController::ponderMove() const {
  const SearchState& state = implementation_->state;
  const bool hasReply = state.rootPv[0] && state.bestScore > -29998;
  return hasReply ? state.rootPv[1] : NULL_MOVE;
}

Score SearchController::bestScore() const {
  return implementation_->state.bestScore;
}

int SearchController::depth() const {
  return implementation_->state.depth;
}

int SearchController::selectiveDepth() const {
  return implementation_->state.mainThread().seldepth;
}

std::span<const Move> SearchController::principalVariation() const {
  return implementation_->state.rootPv.moves();
}

std::uint64_t SearchController::nodes() const {
  return implementation_->state.nodes();
}

unsigned SearchController::hashFull() const {
  const SearchState& state = implementation_->state;
  std::uint64_t occupied = 0;
  for (const auto& thread : state.threads) {
    const TtCounters& counters = thread->counters.tt;
    const std::uint64_t stores = counters.stores.value();
    occupied += stores - std::min(stores, counters.overwrites.value());
  }
  return static_cast<unsigned>(1000 * occupied / state.tt.entries());
}

SearchClock& SearchController::clock() {
  return implementation_->state.clock;
}

Tt& SearchController::tt() {
  return implementation_->state.tt;
}

}  // namespace ombrin
