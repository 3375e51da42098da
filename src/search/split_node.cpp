#include "search/split_node.h"

#include <algorithm>
#include <chrono>
#include <mutex>

#include "board/make_move.h"
#include "search/move_picker.h"
#include "search/search_state.h"

namespace ombrin {

namespace {

// Split nodes above one another: more than all threads together can have open.
constexpr int MAX_CHAIN = 63;

// Adds the nanoseconds of its life to a counter.
class Stopwatch {
 public:
  explicit Stopwatch(Counter& counter) : counter_(counter), start_(Clock::now()) {}
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;
  ~Stopwatch() {
    using std::chrono::nanoseconds;
    const auto time = std::chrono::duration_cast<nanoseconds>(Clock::now() - start_);
    counter_ += static_cast<std::uint64_t>(time.count());
  }

 private:
  using Clock = std::chrono::steady_clock;
  Counter& counter_;
  Clock::time_point start_;
};

SplitNode* parentOf(const SplitNode& node) {
  // Relaxed: a chain is walked under the global lock, or upwards from a node that one works for,
  // whose ancestors were there before it.
  return node.parent.load(std::memory_order_relaxed);
}

// Is the node `ancestor`, or below it?
bool isWithin(const SplitNode* node, const SplitNode* ancestor) {
  for (int steps = 0; node != nullptr && steps < MAX_CHAIN; ++steps, node = parentOf(*node)) {
    if (node == ancestor) return true;
  }
  return false;
}

// The split node that the thread works for or has been assigned to.
SplitNode* currentNode(const SearchThread& thread) {
  // Acquire: whoever finds an assignment sees the node as it was when it was assigned.
  return thread.splitNode.load(std::memory_order_acquire);
}

void setCurrentNode(SearchThread& thread, SplitNode* node) {
  thread.splitNode.store(node, std::memory_order_release);
}

void leave(SplitNode& node) {
  node.threads.fetch_sub(1, std::memory_order_release);
}

// Acquire: once the others have left, what they have written is there.
int threadsAt(const SplitNode& node) {
  return node.threads.load(std::memory_order_acquire);
}

// The moves that a thread has made to get from one node to another one below it.
class Replay {
 public:
  // Waits for the path to be ready. The board must stand at the path's move number `from`.
  Replay(SearchThread& thread, const SplitNode& node, int from) : board_(thread.board) {
    for (SpinWait wait; node.state.load(std::memory_order_acquire) < SplitNode::PATH_READY;) {
      wait.pause();
    }
    for (; from < node.terms.ply; ++from) {
      moves_[count_] = node.path[from];
      saved_[count_] = board_.save();
      if (moves_[count_]) {
        makeMove(board_, moves_[count_]);
      } else {
        makeNullMove(board_);
      }
      ++count_;
    }
  }
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;
  ~Replay() {
    while (count_ > 0) {
      --count_;
      if (moves_[count_]) {
        unmakeMove(board_, moves_[count_], saved_[count_]);
      } else {
        unmakeNullMove(board_, saved_[count_]);
      }
    }
  }

 private:
  Board& board_;
  int count_ = 0;
  std::array<Move, SplitNode::MAX_PATH> moves_;
  std::array<SavedState, SplitNode::MAX_PATH> saved_;
};

// May an idle thread help at a new node below `parent`? A thread that waits for the others at its
// own split node may only help below that one: what it begins elsewhere could keep it from coming
// back.
bool mayHelp(const SearchThread& idle, const SplitNode* parent, int threadCount) {
  if (idle.isStopped() || !idle.idle.load(std::memory_order_relaxed)) return false;
  const SplitNode* const waitingFor = currentNode(idle);
  if (waitingFor == nullptr) return true;
  if (threadsAt(*waitingFor) < 2) return false;  // about to go on by itself
  return threadCount <= 2 || isWithin(parent, waitingFor);
}

// Fills in what the joined threads wait for: the way to the node first, then the moves.
void fillIn(SearchThread& thread, SplitNode& node, Move move, MovePicker& picker) {
  const Board& board = thread.board;
  const int ply = node.terms.ply;
  std::copy_n(board.moveHistory.begin() + (board.ply - ply), ply, node.path.begin());
  node.state.store(SplitNode::PATH_READY, std::memory_order_release);

  int count = 0;
  node.killerStart = node.quietStart = 0;
  for (; move; move = picker.next()) {
    if (picker.isCapture()) node.killerStart = count + 1;
    if (picker.isCapture() || picker.isKiller()) node.quietStart = count + 1;
    node.moves[count++] = move;
  }
  node.moves[count] = NULL_MOVE;
  node.next.store(0, std::memory_order_relaxed);
  node.end.store(count, std::memory_order_relaxed);
  node.state.store(SplitNode::COMPLETE, std::memory_order_release);
}

void waitForMoves(const SplitNode& node) {
  for (SpinWait wait; node.state.load(std::memory_order_acquire) < SplitNode::COMPLETE;) {
    wait.pause();
  }
}

// After an abort: is it for a node further up? Then the thread stays stopped, else it goes on.
void reconsiderStop(SearchThread& thread) {
  const std::lock_guard lock(thread.lock);
  const SplitNode* failed = nullptr;
  for (const SplitNode* node = currentNode(thread); node != nullptr; node = parentOf(*node)) {
    if (node->currentBest() >= node->terms.beta) failed = node;
  }
  thread.abortMark = failed != nullptr ? failed->terms.ply : 0;
  if (failed != nullptr) {
    thread.stop.store(true, std::memory_order_seq_cst);
  } else {
    resume(thread);
  }
}

// Marks the thread as idle until it is assigned to a node other than `own`, or `isOver` says so.
// The node that it has been assigned to, null when there is none.
template <typename IsOver>
SplitNode* waitForWork(SearchThread& thread, SplitNode* own, IsOver isOver) {
  SearchState& state = thread.state;
  const Stopwatch stopwatch(thread.counters.waitTime);
  {
    const std::lock_guard lock(state.splitLock);
    thread.formerNode = own;
    thread.isWaiting = true;
    thread.idle.store(true, std::memory_order_relaxed);
    state.idleCount.fetch_add(1, std::memory_order_relaxed);
  }
  const auto goesOn = [&] {
    return !thread.isStopped() && currentNode(thread) == own && !isOver();
  };
  for (;;) {
    for (SpinWait wait; goesOn();) wait.pause();
    const std::lock_guard lock(state.splitLock);
    if (goesOn()) continue;  // what it had been assigned to is over
    thread.isWaiting = false;
    thread.idle.store(false, std::memory_order_relaxed);
    SplitNode* const assigned = currentNode(thread);
    if (assigned != own) return assigned;
    state.idleCount.fetch_sub(1, std::memory_order_relaxed);
    return nullptr;
  }
}

// Takes back the threads that have been assigned to the node and have not found out yet: the
// processor has others to run, and there is nothing left to do for them.
void takeBackAssigned(const SearchThread& owner, SplitNode& node) {
  SearchState& state = owner.state;
  const std::lock_guard lock(state.splitLock);
  for (int i = 0; i < state.threadCount; ++i) {
    SearchThread& other = *state.threads[i];
    if (!other.isWaiting || currentNode(other) != &node) continue;
    setCurrentNode(other, other.formerNode);
    other.idle.store(true, std::memory_order_relaxed);
    state.idleCount.fetch_add(1, std::memory_order_relaxed);
    leave(node);
  }
}

// The owner of a node whose moves have all been taken helps below it until the others are done.
void helpWhileWaiting(SearchThread& thread, SplitNode& own) {
  while (!thread.isStopped()) {
    SplitNode* const node = waitForWork(thread, &own, [&own] { return threadsAt(own) <= 1; });
    if (node == nullptr && !thread.isStopped()) return;
    if (node != nullptr) {
      if (!thread.isStopped() && threadsAt(own) > 1) {
        const Replay replay(thread, *node, own.terms.ply);
        waitForMoves(*node);
        node->search(thread, *node);
      }
      const std::lock_guard lock(thread.state.splitLock);
      setCurrentNode(thread, &own);
      leave(*node);
    }
    if (thread.isStopped()) reconsiderStop(thread);
  }
}

}  // namespace

SplitNode* trySplit(SearchThread& thread) {
  // Step 1. Nobody idle, or somebody else looking for help: not now.
  SearchState& state = thread.state;
  if (state.idleCount.load(std::memory_order_relaxed) == 0 || !state.splitLock.try_lock()) {
    return nullptr;
  }
  const std::lock_guard lock(state.splitLock, std::adopt_lock);
  if (thread.isStopped()) return nullptr;

  // Step 2. A fresh record, with the thread itself at work.
  SplitNode& node = thread.pool[thread.splitNodesInUse];
  SplitNode* const parent = currentNode(thread);
  node.owner = &thread;
  node.parent.store(parent, std::memory_order_relaxed);
  node.state.store(SplitNode::SETTING_UP, std::memory_order_relaxed);
  node.threads.store(1, std::memory_order_relaxed);
  ++thread.counters.splits;

  // Step 3. Everyone who may joins.
  int joined = 0;
  for (int i = 0; i < state.threadCount; ++i) {
    SearchThread& other = *state.threads[i];
    if (&other == &thread || !mayHelp(other, parent, state.threadCount)) continue;
    other.idle.store(false, std::memory_order_relaxed);
    setCurrentNode(other, &node);
    ++joined;
  }
  if (joined == 0) return nullptr;

  // Step 4. Success.
  state.idleCount.fetch_sub(joined, std::memory_order_relaxed);
  setCurrentNode(thread, &node);
  node.threads.store(joined + 1, std::memory_order_relaxed);
  return &node;
}

Verdict searchSplit(SearchThread& thread, SplitNode& node, const Verdict& soFar, Move move,
                    MovePicker& picker) {
  // Step 1. Hand the node over.
  ++thread.splitNodesInUse;
  node.alpha.store(soFar.alpha, std::memory_order_relaxed);
  node.best.store(soFar.best, std::memory_order_relaxed);
  node.bestMove = soFar.bestMove;
  fillIn(thread, node, move, picker);

  // Step 2. Search a share of it, and help the others with theirs.
  const std::uint64_t nodesBefore = thread.counters.nodes();
  node.search(thread, node);
  if (threadsAt(node) > 1) takeBackAssigned(thread, node);
  if (!thread.isStopped() && threadsAt(node) > 1 && node.currentBest() < node.terms.beta) {
    helpWhileWaiting(thread, node);
  }
  thread.counters.splitnodes += thread.counters.nodes() - nodesBefore;

  // Step 3. Wait until everyone has left.
  if (threadsAt(node) > 1) {
    const Stopwatch stopwatch(thread.counters.waitTime);
    for (SpinWait wait; threadsAt(node) > 1;) wait.pause();
  }
  setCurrentNode(thread, parentOf(node));
  leave(node);
  --thread.splitNodesInUse;

  // Step 4. An abort of this node or one below it ends here.
  {
    const std::lock_guard lock(thread.lock);
    if (thread.abortMark != 0 && node.terms.ply <= thread.abortMark) {
      thread.abortMark = 0;
      resume(thread);
    }
  }
  return {node.currentAlpha(), node.currentBest(), node.bestMove};
}

void abortSplit(SearchThread& thread, SplitNode& node, Move move, Score score) {
  SearchState& state = thread.state;
  ++thread.counters.splitfails;
  const std::lock_guard globalLock(state.splitLock);
  node.end.store(0, std::memory_order_relaxed);
  {
    const std::lock_guard lock(node.lock);
    if (score > node.currentBest()) {
      node.alpha.store(score, std::memory_order_relaxed);
      node.best.store(score, std::memory_order_relaxed);
      node.bestMove = move;
    }
  }
  if (thread.isStopped()) return;  // by an abort further up, which has reached everyone
  for (int i = 0; i < state.threadCount; ++i) {
    SearchThread& other = *state.threads[i];
    if (&other == &thread || !isWithin(currentNode(other), &node)) continue;
    const std::lock_guard lock(other.lock);
    ++other.kills;
    if (other.abortMark != 0 && other.abortMark <= node.terms.ply) continue;
    other.abortMark = node.terms.ply;
    other.idle.store(false, std::memory_order_relaxed);
    other.stop.store(true, std::memory_order_seq_cst);
  }
}

void joinSplit(SearchThread& thread) {
  SplitNode* const assigned = waitForWork(thread, nullptr, [] { return false; });
  if (assigned == nullptr) return;
  SplitNode& node = *assigned;
  SearchCounters& counters = thread.counters;
  const std::uint64_t waitedBefore = counters.waitTime.value();
  Counter busy;
  Counter whole;
  {
    const Stopwatch wholeTime(whole);
    if (!thread.isStopped()) {
      const Replay replay(thread, node, 0);
      waitForMoves(node);
      const Stopwatch busyTime(busy);
      node.search(thread, node);
    }
    const std::lock_guard lock(thread.state.splitLock);
    setCurrentNode(thread, nullptr);
    leave(node);
  }
  const std::uint64_t waited = counters.waitTime.value() - waitedBefore;
  counters.workTime += busy.value() - std::min(busy.value(), waited);
  counters.adminTime += whole.value() - busy.value();
}

// See SearchState::requestStop for the order.
void resume(SearchThread& thread) {
  thread.stop.store(false, std::memory_order_seq_cst);
  if (thread.state.stopped.load(std::memory_order_seq_cst)) {
    thread.stop.store(true, std::memory_order_seq_cst);
  }
}

}  // namespace ombrin
