#pragma once

#include <array>
#include <atomic>
#include <span>

#include "board/board.h"
#include "eval/evaluator.h"
#include "platform/event.h"
#include "platform/thread.h"
#include "search/pv_line.h"
#include "search/search_counters.h"
#include "search/spin_lock.h"
#include "search/split_node.h"

namespace ombrin {

struct SearchState;

// The last ply at which the main search still searches, and the last at which quiescence does.
inline constexpr int MAX_MAIN_PLY = 99;
inline constexpr int MAX_PLY = 119;

// The two latest quiet moves that refuted something at a ply, without flags.
struct Killers {
  Move first;
  Move second;
};

// The context of one search thread: everything it writes while it searches, the table and split
// nodes aside. Its search reads and writes it without a lock; `stop` and the counters may be used
// from any thread.
struct SearchThread {
  // Tables by ply have some rows more than the last ply needs, for its look ahead.
  static constexpr int PLIES = MAX_PLY + 9;
  // Room for the moves of one node: its captures, those set aside as losing, and the quiet ones.
  static constexpr int MOVE_ROOM = MAX_MOVES + 128;

  SearchThread(SearchState& owner, int number) : state(owner), index(number) {}
  SearchThread(const SearchThread&) = delete;
  SearchThread& operator=(const SearchThread&) = delete;

  // Forgets the search before. Leaves the board and the stop flag alone.
  void reset();
  // Keeps a quiet move that refuted a node.
  void addKiller(int ply, Move move) {
    Killers& pair = killers[ply];
    if (pair.first.isSameAs(move)) return;
    pair.second = pair.first;
    pair.first = move.identity();
  }
  bool isStopped() const { return stop.load(std::memory_order_relaxed); }
  std::span<Move, MOVE_ROOM> moveRoom(int ply) { return moves[ply]; }

  SearchState& state;
  const int index;

  // Unwinds the search: every level returns 0 and its caller uses nothing of it. Relaxed is enough
  // to poll it; see SearchState::requestStop for how it is set and cleared.
  alignas(64) std::atomic<bool> stop{false};

  alignas(64) Board board;
  Evaluator evaluator{board};
  std::array<Killers, PLIES> killers{};
  std::array<Move, PLIES> mateKiller{};  // by ply: a move that led to a mate score
  std::array<Move, PLIES> lastCut{};     // by ply: the latest refutation in quiescence
  int seldepth = 0;                      // the greatest ply that quiescence has entered
  int nullMoves = 0;                     // null moves on the way to the current node
  SearchCounters counters;
  std::array<PvLine, PLIES> pv{};
  std::array<std::array<Move, MOVE_ROOM>, PLIES> moves{};

  // The parallel search. Others give an idle thread its split node, and an aborted one its mark.
  static constexpr int SPLIT_NODES = 8;
  alignas(64) std::atomic<SplitNode*> splitNode{nullptr};  // the one it works for
  // Ready to be given another one. Relaxed: it is only read and written under the global lock.
  std::atomic<bool> idle{false};
  // Has it not found out yet what it has been assigned to? And what it worked for before, which it
  // goes back to when that is taken back. Under the global lock.
  bool isWaiting = false;
  SplitNode* formerNode = nullptr;
  SpinLock lock;      // of the abort mark, and of clearing `stop` after an abort
  int abortMark = 0;  // the ply that an abort takes it back to, 0 when there is none
  Counter kills;      // aborts received; under the lock
  int splitNodesInUse = 0;
  std::array<SplitNode, SPLIT_NODES> pool;

  // The thread itself, and its sleep between searches.
  Event asleep;
  Event wake;
  Thread thread;
};

}  // namespace ombrin
