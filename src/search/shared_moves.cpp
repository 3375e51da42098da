#include "search/shared_moves.h"

#include <algorithm>
#include <mutex>

#include "search/move_loop.h"

namespace ombrin {

namespace {

// The moves of a split node, as one of the threads that work there takes them.
class SharedMoves {
 public:
  // As much as for a hash move: with several threads at work, the depth that it takes to judge a
  // pawn ending costs less than being wrong about it.
  static constexpr int PAWN_ENDING_EXTENSION = 3;

  SharedMoves(SearchThread& thread, SplitNode& node)
      : thread_(thread), node_(node), best_(node.currentBest()) {}

  Candidate next() {
    if (thread_.isStopped()) return {};
    int number = 0;
    const Move move = node_.take(number);
    alpha_ = node_.currentAlpha();
    if (!move) {
      leaveBehind();
    } else if (alpha_ < node_.terms.beta) {
      return {move, number >= node_.killerStart, number >= node_.quietStart};
    }
    return {};
  }

  NodeType type() const { return node_.type; }
  Score alpha() const { return alpha_; }
  void prune(Score futility) { best_ = std::max(best_, futility); }
  bool handOver(Move /*move*/) { return false; }
  bool hasSearched() const { return true; }

  bool judge(Move move, Score score, bool /*failedReduced*/) {
    ++thread_.counters.splitmoves;
    if (score >= node_.terms.beta) {
      ++thread_.counters.cutnodes;
      abortSplit(thread_, node_, move, score);
      return false;
    }
    if (score <= best_) return true;
    best_ = score;
    bestMove_ = move;
    if (score > alpha_) raiseAlpha(move, score);
    return true;
  }

 private:
  // For all who work here, if it is still a raise.
  void raiseAlpha(Move move, Score score) {
    const std::lock_guard lock(node_.lock);
    if (score <= node_.currentAlpha()) return;
    node_.alpha.store(score, std::memory_order_relaxed);
    node_.best.store(score, std::memory_order_relaxed);
    node_.bestMove = move;
    const int ply = node_.terms.ply;
    node_.owner->pv[ply].set(move, thread_.pv[ply + 1]);
    ++thread_.counters.raises;
  }

  // What came of one's own moves, when there are no more.
  void leaveBehind() {
    if (best_ <= node_.currentBest()) return;
    const std::lock_guard lock(node_.lock);
    if (best_ <= node_.currentBest()) return;
    node_.best.store(best_, std::memory_order_relaxed);
    if (bestMove_) node_.bestMove = bestMove_;
  }

  SearchThread& thread_;
  SplitNode& node_;
  Score alpha_;
  Score best_;
  Move bestMove_;
};

}  // namespace

void searchSharedMoves(SearchThread& thread, SplitNode& node) {
  SharedMoves source(thread, node);
  searchMoves(thread, node.terms, source);
}

}  // namespace ombrin
