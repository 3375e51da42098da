#include "search/alpha_beta.h"

#include <algorithm>
#include <array>
#include <optional>

#include "board/exchange.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "search/move_loop.h"
#include "search/move_picker.h"
#include "search/node.h"
#include "search/selectivity.h"
#include "search/shared_moves.h"
#include "search/split_node.h"

namespace ombrin {

namespace {

// What a quiet move may be expected to add to the static score, by depth.
constexpr std::array<int, 5> FUTILITY_MARGIN = {0, 50, 150, 450, 1150};

// Has the last move brought a pawn before the best move's piece, or a bigger victim to its square,
// so that failing low may be the fault of the depth?
bool deservesSecondLook(const Board& board, Move lastMove, Move best) {
  if (!lastMove || !best) return false;
  const Piece moved = board.at(lastMove.to());
  if (moved.isPawn() && (moved.kind() & attacksOver(best.from() - lastMove.to())) != 0) {
    return true;
  }
  return best.to() == lastMove.to() && best.captured().value() > lastMove.captured().value();
}

// A node's score, where a step decides it; 0 when the thread was stopped, as a stopped search
// returns.
using Decision = std::optional<Score>;
constexpr Score STOPPED = 0;

// One node of the main search, below the horizon.
class Node {
 public:
  Node(SearchThread& thread, int ply, Score alpha, Score beta, int depth, Move lastMove,
       NodeType type)
      : thread_(thread),
        state_(thread.state),
        board_(thread.board),
        counters_(thread.counters),
        pv_(thread.pv[ply]),
        own_(board_.material(board_.side)),
        type_(type),
        inCheck_(lastMove.isCheck()) {
    terms_.lastMove = lastMove;
    terms_.ply = ply;
    terms_.depth = depth;
    terms_.beta = beta;
    verdict_.alpha = alpha;
  }

  Score search();

 private:
  friend class OrdinaryMoves;

  Decision probeTable();
  Decision probeBitbases();
  Decision tryNullMove();
  Score searchNullMove();
  Decision deepenInternally();
  Decision tryHashMove();
  Decision tryMateKiller();
  void prepareMoves();
  Decision tryMoves();
  Decision lookAgain();
  Score keepResult();

  bool isStopped() const { return thread_.isStopped(); }
  // Keeps the move that decided the node, and its score.
  Score refuted(Move move, Score score) {
    store(move, score, TT_LOWER);
    pv_.set(move);
    return score;
  }
  // The same of a move that is worth trying first in other nodes of this ply.
  Score failHigh(Move move, Score score) {
    // The bound itself is quiescence saying that it did not look for more.
    if (score > MATE_BOUND) thread_.mateKiller[terms_.ply] = move.identity();
    if (move.isQuiet() && !inCheck_) thread_.addKiller(terms_.ply, move);
    return refuted(move, score);
  }
  void store(Move move, Score score, Bound bound) {
    storeNode(thread_, terms_.ply, terms_.depth, move, score, bound);
  }
  // Is the score of a move the best so far? Then it is kept, with its line where it raises alpha.
  void keepIfBest(Move move, Score score) {
    if (score <= verdict_.best) return;
    verdict_.best = score;
    verdict_.bestMove = move;
    if (score <= verdict_.alpha) return;
    pv_.set(move, thread_.pv[terms_.ply + 1]);
    ++counters_.raises;
    verdict_.alpha = score;
  }
  // One move has been searched without a cut: a node that was expected to fail high fails low.
  void countMove() {
    ++searched_;
    if (type_ == CUT_NODE) type_ = ALL_NODE;
  }

  SearchThread& thread_;
  SearchState& state_;
  Board& board_;
  SearchCounters& counters_;
  PvLine& pv_;
  const Material own_;
  NodeTerms terms_;
  NodeType type_;
  const bool inCheck_;
  bool triesNullMove_ = false;
  Score oldAlpha_;  // what the node has to beat
  Move hashMove_;
  Move threat_;  // what refuted a null move
  Verdict verdict_;
  int searched_ = 0;  // moves, the pruned ones included
};

// The moves of a node as its picker gives them, searched by this thread, or shared when others are
// idle.
class OrdinaryMoves {
 public:
  static constexpr int PAWN_ENDING_EXTENSION = 1;

  OrdinaryMoves(Node& node, MovePicker& picker) : node_(node), picker_(picker) {}

  Candidate next() {
    const Move move = picker_.next();
    return {move, true, !picker_.isCapture() && !picker_.isKiller()};
  }
  NodeType type() const { return node_.type_; }
  Score alpha() const { return node_.verdict_.alpha; }
  void prune(Score futility) {
    node_.verdict_.best = std::max(node_.verdict_.best, futility);
    ++node_.searched_;
  }
  bool hasSearched() const { return node_.searched_ > 0; }

  bool handOver(Move move) {
    picker_.prefetchNext();
    SearchThread& thread = node_.thread_;
    if (node_.terms_.depth < node_.state_.minSplitDepth || !hasSearched() ||
        thread.splitNodesInUse >= SearchThread::SPLIT_NODES) {
      return false;
    }
    SplitNode* const split = trySplit(thread);
    if (split == nullptr) return false;
    split->terms = node_.terms_;
    split->type = node_.type_;
    split->search = searchSharedMoves;
    Verdict& verdict = node_.verdict_;
    verdict = searchSplit(thread, *split, verdict, move, picker_);
    if (!thread.isStopped() && verdict.best >= node_.terms_.beta) {
      decision_ = node_.failHigh(verdict.bestMove, verdict.best);
    }
    return true;
  }

  bool judge(Move move, Score score, bool failedReduced) {
    if (score >= node_.terms_.beta) {
      ++node_.counters_.cutnodes;
      if (!hasSearched()) ++node_.counters_.firstcuts;
      if (picker_.isKiller()) ++node_.counters_.killercuts;
      decision_ = node_.failHigh(move, score);
      return false;
    }
    node_.keepIfBest(move, score);
    node_.countMove();
    if (failedReduced) node_.type_ = ALL_NODE;
    return true;
  }

  // Set when the moves decided the node.
  Decision decision() const { return decision_; }

 private:
  Node& node_;
  MovePicker& picker_;
  Decision decision_;
};

Score Node::search() {
  const int ply = terms_.ply;
  const Score beta = terms_.beta;
  Score& alpha = verdict_.alpha;

  // Step 2. The clock, from time to time.
  ++counters_.inodes;
  if ((counters_.inodes.value() & 0xff) == 0 && state_.stopIfSpent(thread_)) return STOPPED;
  pv_.clear();

  // Step 3. The opponent moved back: so can we, and have a draw.
  if (beta <= 0 && ply > 2) {
    if (const Move back = moveBack(board_)) {
      pv_.set(back);
      return DRAW;
    }
  }

  // Step 4. Draws.
  if (isDraw(board_, ply)) return DRAW;

  // Step 5. Mate distance.
  if (type_ != PV_NODE) {
    if (const Decision score = pruneByMateDistance(ply, inCheck_, alpha, beta)) return *score;
  }
  oldAlpha_ = alpha;

  // What step 8 will ask the table, fetched together with what step 6 asks.
  triesNullMove_ = terms_.depth >= 2 && terms_.lastMove && !inCheck_ && type_ == CUT_NODE &&
                   beta < WIN_BOUND && own_.hasPieces();
  if (triesNullMove_) state_.tt.prefetchAfterNullMove(board_);

  // Step 6. The table: it decides the node, or suggests a move.
  if (const Decision score = probeTable()) return *score;

  // Step 7. The bitbases.
  if (const Decision score = probeBitbases()) return *score;

  // Step 8. Null move with verification; what refutes it is a threat to answer.
  if (triesNullMove_) {
    if (const Decision score = tryNullMove()) return *score;
  }

  // Step 9. Checks are searched a ply deeper.
  terms_.newDepth = inCheck_ && !own_.isBareKing() ? terms_.depth : terms_.depth - 1;

  // Step 10. Internal iterative deepening, when there is no move to begin with.
  if (!hashMove_ && terms_.depth > 1 &&
      (type_ == PV_NODE || (type_ == CUT_NODE && terms_.newDepth > 2))) {
    if (const Decision score = deepenInternally()) return *score;
  }

  // Step 11. The hash move, before any move is generated.
  if (hashMove_ && !inCheck_) {
    if (const Decision score = tryHashMove()) return *score;
  }

  // Step 12. A move that mated at this ply before.
  if (thread_.mateKiller[ply] && type_ != PV_NODE && !inCheck_) {
    if (const Decision score = tryMateKiller()) return *score;
  }

  // Step 13. Futility and reductions: what late moves can be expected to do.
  prepareMoves();

  // Steps 14 and 15. The moves.
  if (const Decision score = tryMoves()) return *score;

  // Step 16. Mate or stalemate.
  if (searched_ == 0) {
    ++counters_.endnodes;
    return inCheck_ ? Score::matedIn(ply) : DRAW;
  }

  // Step 17. A fail low that one ply more may mend.
  if (verdict_.best <= oldAlpha_ &&
      deservesSecondLook(board_, terms_.lastMove, verdict_.bestMove)) {
    if (const Decision score = lookAgain()) return *score;
  }

  // Step 18. Keep the result.
  return keepResult();
}

Decision Node::probeTable() {
  ++counters_.probes;
  TtEntry entry;
  if (!state_.tt.probe(board_, entry)) return std::nullopt;
  ++counters_.hits;
  const int ply = terms_.ply;
  const Score score = entry.score.relativeToRoot(ply);
  if (type_ != PV_NODE && decides(entry, score, terms_.depth, verdict_.alpha, terms_.beta)) {
    ++counters_.cuts;
    if (score >= terms_.beta && entry.move && entry.move.isQuiet() && !inCheck_) {
      thread_.addKiller(ply, entry.move);
    }
    pv_.set(entry.move);
    return score;
  }
  const bool useless =
      (type_ == PV_NODE && entry.bound == TT_UPPER) || entry.depth < terms_.depth - 2;
  if (entry.move && !useless && isMove(board_, entry.move, terms_.lastMove)) {
    hashMove_ = entry.move.identity();
  }
  return std::nullopt;
}

// What the bitbases say, kept in the table; nothing when they are silent, or when the position is
// won or lost and the way to the mate is still to be searched.
Decision Node::probeBitbases() {
  const BitbaseLimits& limits = state_.bitbaseLimits;
  const int men = menOnBoard(board_);
  const int ply = terms_.ply;
  if (men > limits.probe || board_.hasEnPassant()) return std::nullopt;
  if (men > limits.memory && ply >= limits.ply) return std::nullopt;
  const std::optional<Score> answer = state_.bitbases.probe(board_);
  if (!answer) return std::nullopt;
  if (inCheck_ && *answer < -WIN_BOUND && pseudoLegalMoves(board_, terms_.lastMove).empty()) {
    return Score::matedIn(ply);
  }
  const Score score = answer->relativeToRoot(ply);
  store(NULL_MOVE, score,
        score <= verdict_.alpha ? TT_UPPER
        : score >= terms_.beta  ? TT_LOWER
                                : TT_EXACT);
  if (men > limits.memory && ply >= limits.ply - 1) return score;
  if (score > -WIN_BOUND && score < WIN_BOUND) return score;
  return std::nullopt;
}

Decision Node::tryNullMove() {
  const int ply = terms_.ply;
  const Move lastMove = terms_.lastMove;
  const Score score = searchNullMove();
  if (isStopped()) return STOPPED;
  threat_ = thread_.pv[ply + 1][0];
  if (score >= terms_.beta && score < WIN_BOUND) {
    bool verified = own_.pieces() > 3;
    if (!verified) {
      const Score second =
          alphaBeta(thread_, ply, verdict_.alpha, terms_.beta, terms_.depth - 4, lastMove, PV_NODE);
      if (isStopped()) return STOPPED;
      verified = second >= terms_.beta;
    }
    if (verified) {
      ++counters_.nullcuts;
      store(NULL_MOVE, score, TT_LOWER);
      return score;
    }
  }
  // The piece that the parent moved with a reduction makes the threat: have the parent look again.
  if (lastMove.isReduced() && threat_ && threat_.from() == lastMove.to()) return -MATE;
  if (threat_) terms_.threatSquare = threat_.to();
  return std::nullopt;
}

// Lets the opponent move twice. The score from the mover's side; the refutation, if there is one,
// is left in pv[ply + 1].
Score Node::searchNullMove() {
  const std::uint64_t before = counters_.nodes();
  const SavedState saved = board_.save();
  ++counters_.nulltries;
  makeNullMove(board_);
  ++thread_.nullMoves;
  const Score score = -alphaBeta(thread_, terms_.ply + 1, -terms_.beta, -terms_.beta + 1,
                                 terms_.depth - 4, NULL_MOVE, ALL_NODE);
  --thread_.nullMoves;
  unmakeNullMove(board_, saved);
  if (thread_.nullMoves == 0) counters_.nullnodes += counters_.nodes() - before;
  return score;
}

Decision Node::deepenInternally() {
  const int ply = terms_.ply;
  const std::uint64_t before = counters_.nodes();
  const Score score = alphaBeta(thread_, ply, verdict_.alpha, terms_.beta, terms_.newDepth - 2,
                                terms_.lastMove, type_);
  counters_.iidnodes += counters_.nodes() - before;
  if (isStopped()) return STOPPED;
  const Move move = pv_[0];
  if (score > MATE_BOUND && score >= terms_.beta) {
    thread_.mateKiller[ply] = move.identity();
    return score;
  }
  if (score < -MATE_BOUND && score < verdict_.alpha) return score;
  if (move && isMove(board_, move, terms_.lastMove)) hashMove_ = move.identity();
  return std::nullopt;
}

Decision Node::tryHashMove() {
  constexpr int PAWN_ENDING_EXTENSION = 3;
  const SavedState saved = board_.save();
  const Move move = makeAhead(thread_, hashMove_);
  if (!move) {
    hashMove_ = NULL_MOVE;
    return std::nullopt;
  }
  const int depth = terms_.newDepth + extension(board_, terms_, type_, move, PAWN_ENDING_EXTENSION);
  const Score score =
      -alphaBeta(thread_, terms_.ply + 1, -terms_.beta, -verdict_.alpha, depth, move, -type_);
  unmakeMove(board_, move, saved);
  if (isStopped()) return STOPPED;
  if (score >= terms_.beta) {
    ++counters_.cutnodes;
    ++counters_.firstcuts;
    return failHigh(move, score);
  }
  keepIfBest(move, score);
  countMove();
  return std::nullopt;
}

// Unless it hangs.
Decision Node::tryMateKiller() {
  const int ply = terms_.ply;
  const Move killer = thread_.mateKiller[ply];
  if (killer.isSameAs(hashMove_) || !isMove(board_, killer, terms_.lastMove)) return std::nullopt;
  if (killer.captured().value() <= board_.at(killer.from()).value() &&
      losesMaterial(board_, board_.side, killer)) {
    return std::nullopt;
  }
  const SavedState saved = board_.save();
  const Move move = makeAhead(thread_, killer);
  if (!move) return std::nullopt;
  const Score score =
      -alphaBeta(thread_, ply + 1, -terms_.beta, 1 - terms_.beta, terms_.depth - 1, move, -type_);
  unmakeMove(board_, move, saved);
  if (isStopped()) return STOPPED;
  if (score >= terms_.beta) return refuted(move, score);
  thread_.mateKiller[ply] = NULL_MOVE;
  return std::nullopt;
}

void Node::prepareMoves() {
  if (inCheck_) return;
  const Score alpha = verdict_.alpha;
  if (board_.material(~board_.side).hasPieces() && terms_.depth <= 4 && type_ != PV_NODE &&
      alpha > -WIN_BOUND && alpha < WIN_BOUND) {
    const Score score = thread_.evaluator.evaluate();
    if (score <= alpha) terms_.futility = score + FUTILITY_MARGIN[terms_.depth];
  }
  terms_.mayReduce = terms_.depth >= 2;
  if (terms_.mayReduce) {
    thread_.evaluator.probePawnHash();
    terms_.passedFiles = thread_.evaluator.pawnEntry().sides[board_.side].passedFiles;
  }
}

// A forced reply is searched a ply deeper.
Decision Node::tryMoves() {
  MovePicker picker = inCheck_
                          ? MovePicker::evasions(thread_, terms_.ply, terms_.lastMove, hashMove_)
                          : MovePicker::main(thread_, terms_.ply, hashMove_, threat_);
  if (inCheck_ && picker.evasionCount() == 1 && !own_.isBareKing()) ++terms_.newDepth;
  OrdinaryMoves moves(*this, picker);
  searchMoves(thread_, terms_, moves);
  if (isStopped()) return STOPPED;
  return moves.decision();
}

Decision Node::lookAgain() {
  const SavedState saved = board_.save();
  const Move move = makeAhead(thread_, verdict_.bestMove);
  if (!move) return std::nullopt;
  const Score score = -alphaBeta(thread_, terms_.ply + 1, -terms_.beta, -verdict_.alpha,
                                 terms_.newDepth + 1, move, -type_);
  unmakeMove(board_, move, saved);
  if (isStopped()) return STOPPED;
  if (score >= terms_.beta) {
    store(move, score, TT_LOWER);
    return score;
  }
  if (score > verdict_.best) {
    verdict_.best = score;
    if (score > verdict_.alpha) pv_.set(move, thread_.pv[terms_.ply + 1]);
  }
  return std::nullopt;
}

Score Node::keepResult() {
  const auto& [alpha, best, bestMove] = verdict_;
  if (best <= oldAlpha_) {
    ++counters_.allnodes;
    store(bestMove, best, TT_UPPER);
  } else {
    ++counters_.pvnodes;
    if (bestMove.isQuiet() && !inCheck_) thread_.addKiller(terms_.ply, bestMove);
    store(bestMove, best, TT_EXACT);
  }
  return best;
}

}  // namespace

Score alphaBeta(SearchThread& thread, int ply, Score alpha, Score beta, int depth, Move lastMove,
                NodeType type) {
  // Step 1. Stop, or hand over at the horizon.
  if (thread.isStopped()) return STOPPED;
  if (depth < 1 || ply > MAX_MAIN_PLY) {
    ++thread.counters.fnodes;
    return quiesce(thread, ply, alpha, beta, QUIESCENCE_BUDGET, lastMove);
  }
  return Node(thread, ply, alpha, beta, depth, lastMove, type).search();
}

}  // namespace ombrin
