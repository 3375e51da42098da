#pragma once

#include <array>
#include <atomic>

#include "board/move.h"
#include "board/score.h"
#include "search/node_terms.h"
#include "search/spin_lock.h"

namespace ombrin {

struct SearchThread;

// A node whose remaining moves several threads search together, each on its own board. Its owner,
// the thread that met the node, fills it in and stays until all have left.
struct SplitNode {
  // How far the owner has got with filling it in. Stored with release and loaded with acquire: who
  // sees a state sees all that was filled in before it.
  enum State { SETTING_UP = 1, PATH_READY = 2, COMPLETE = 3 };
  static constexpr int MAX_PATH = 128;

  std::array<Move, MAX_MOVES + 1> moves;  // ends with a null move
  std::array<Move, MAX_PATH> path;        // the first `ply` are the moves from the root to here

  std::atomic<int> state{SETTING_UP};
  // Index of the next move to hand out, and of the end. Relaxed: who takes an index below the end
  // has seen COMPLETE, and the moves with it. An abort sets the end to 0.
  std::atomic<int> next{0};
  std::atomic<int> end{0};
  // Threads that work here, the owner included. Leaving is a release and the owner's last look an
  // acquire, so that the owner sees all that the others have left here.
  std::atomic<int> threads{0};

  // Constant once the state is PATH_READY.
  SearchThread* owner = nullptr;
  // The split node that the owner was working for. Written under the global lock.
  std::atomic<SplitNode*> parent{nullptr};
  NodeTerms terms;
  NodeType type = PV_NODE;
  int ply = 0;
  Score beta;
  // Constant once it is COMPLETE: where in the list the killers begin, and the quiet moves.
  int killerStart = 0;
  int quietStart = 0;

  // Written under the lock, together with the owner's line of this ply. Relaxed when read without
  // it: an old value costs time and is never wrong.
  SpinLock lock;
  std::atomic<Score> alpha;
  std::atomic<Score> best;
  Move bestMove;  // only under the lock, or by the owner when the others have left

  Score currentAlpha() const { return alpha.load(std::memory_order_relaxed); }
  Score currentBest() const { return best.load(std::memory_order_relaxed); }
};

}  // namespace ombrin
