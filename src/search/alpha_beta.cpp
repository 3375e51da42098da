#include "search/alpha_beta.h"

#include <array>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "search/move_picker.h"
#include "search/node.h"
#include "search/parallel_search.h"
#include "search/selectivity.h"

namespace ombrin {

namespace {

// What a quiet move may be expected to add to the static score, by depth.
constexpr std::array<int, 5> FUTILITY_MARGIN = {0, 50, 150, 450, 1150};

// Counts the nodes searched during its life.
class NodeMeter {
 public:
  NodeMeter(const SearchThread& thread, Counter& counter)
      : thread_(thread), counter_(counter), before_(thread.counters.nodes()) {}
  NodeMeter(const NodeMeter&) = delete;
  NodeMeter& operator=(const NodeMeter&) = delete;
  ~NodeMeter() { counter_ += thread_.counters.nodes() - before_; }

 private:
  const SearchThread& thread_;
  Counter& counter_;
  std::uint64_t before_;
};

// What the bitbases say, kept in the table; nothing when they are silent, or when the position is
// won or lost and the way to the mate is still to be searched.
std::optional<Score> probeBitbases(SearchThread& thread, int ply, Score alpha, Score beta,
                                   int depth, Move lastMove) {
  const Board& board = thread.board;
  const BitbaseLimits& limits = thread.state.bitbaseLimits;
  const int men = menOnBoard(board);
  if (men > limits.probe || board.hasEnPassant()) return std::nullopt;
  if (men > limits.memory && ply >= limits.ply) return std::nullopt;
  const std::optional<Score> answer = thread.state.bitbases.probe(board);
  if (!answer) return std::nullopt;
  if (lastMove.isCheck() && *answer < -WIN_BOUND) {
    if (pseudoLegalMoves(board, lastMove).empty()) return Score::matedIn(ply);
  }
  const Score score = answer->relativeToRoot(ply);
  const Bound bound = score <= alpha ? TT_UPPER : score >= beta ? TT_LOWER : TT_EXACT;
  storeNode(thread, ply, depth, NULL_MOVE, score, bound);
  if (men > limits.memory && ply >= limits.ply - 1) return score;
  if (score > -WIN_BOUND && score < WIN_BOUND) return score;
  return std::nullopt;
}

// Lets the opponent move twice. The score from the mover's side; the refutation, if there is one,
// is left in pv[ply + 1].
Score searchNullMove(SearchThread& thread, int ply, Score beta, int depth) {
  Board& board = thread.board;
  const std::uint64_t before = thread.counters.nodes();
  const SavedState saved = board.save();
  ++thread.counters.nulltries;
  makeNullMove(board);
  ++thread.nullMoves;
  const Score score = -alphaBeta(thread, ply + 1, -beta, -beta + 1, depth - 4, NULL_MOVE, ALL_NODE);
  --thread.nullMoves;
  unmakeNullMove(board, saved);
  if (thread.nullMoves == 0) thread.counters.nullnodes += thread.counters.nodes() - before;
  return score;
}

// Has the last move brought a pawn before the best move's piece, or a bigger victim to its square,
// so that failing low may be the fault of the depth?
bool deservesSecondLook(const Board& board, Move lastMove, Move best) {
  if (!lastMove || !best) return false;
  const Piece moved = board.at(lastMove.to());
  if (moved.isPawn() && (moved.kind() & attacksOver(best.from() - lastMove.to()) & 63) != 0) {
    return true;
  }
  return best.to() == lastMove.to() && best.captured().value() > lastMove.captured().value();
}

}  // namespace

Score alphaBeta(SearchThread& thread, int ply, Score alpha, Score beta, int depth, Move lastMove,
                NodeType type) {
  // Step 1. Stop, or hand over at the horizon.
  if (thread.isStopped()) return 0;
  SearchCounters& counters = thread.counters;
  if (depth < 1 || ply > MAX_MAIN_PLY) {
    ++counters.fnodes;
    return quiesce(thread, ply, alpha, beta, QUIESCENCE_BUDGET, lastMove);
  }

  // Step 2. The clock, from time to time.
  ++counters.inodes;
  if ((counters.inodes.value() & 0xff) == 0 && thread.state.stopIfSpent(thread)) return 0;
  SearchState& state = thread.state;
  Board& board = thread.board;
  PvLine& pv = thread.pv[ply];
  pv.clear();

  // Step 3. The opponent moved back: so can we, and have a draw.
  if (beta <= 0 && ply > 2) {
    if (const Move back = moveBack(board)) {
      pv.set(back);
      return DRAW;
    }
  }

  // Step 4. Draws.
  if (isDraw(board, ply)) return DRAW;

  // Step 5. Mate distance.
  const bool inCheck = lastMove.isCheck();
  if (type != PV_NODE) {
    if (const auto score = pruneByMateDistance(ply, inCheck, alpha, beta)) return *score;
  }
  const Score oldAlpha = alpha;

  // What step 8 will ask the table, fetched together with what step 6 asks.
  const Material own = board.material(board.side);
  const bool triesNullMove =
      depth >= 2 && lastMove && !inCheck && type == CUT_NODE && beta < WIN_BOUND && own.hasPieces();
  if (triesNullMove) state.tt.prefetchAfterNullMove(board);

  // Step 6. The table: it decides the node, or suggests a move.
  Move hashMove;
  ++counters.probes;
  if (TtEntry entry; state.tt.probe(board, entry)) {
    ++counters.hits;
    const Score score = entry.score.relativeToRoot(ply);
    if (type != PV_NODE && decides(entry, score, depth, alpha, beta)) {
      ++counters.cuts;
      if (score >= beta && entry.move && entry.move.isQuiet() && !inCheck) {
        thread.addKiller(ply, entry.move);
      }
      pv.set(entry.move);
      return score;
    }
    const bool useless = (type == PV_NODE && entry.bound == TT_UPPER) || entry.depth < depth - 2;
    if (entry.move && !useless && isMove(board, entry.move, lastMove)) {
      hashMove = entry.move.identity();
    }
  }

  // Step 7. The bitbases.
  if (const auto score = probeBitbases(thread, ply, alpha, beta, depth, lastMove)) return *score;

  // Step 8. Null move with verification; what refutes it is a threat to answer.
  Move threat;
  if (triesNullMove) {
    const Score score = searchNullMove(thread, ply, beta, depth);
    if (thread.isStopped()) return 0;
    threat = thread.pv[ply + 1][0];
    if (score >= beta && score < WIN_BOUND) {
      bool verified = own.pieces() > 3;
      if (!verified) {
        const Score second = alphaBeta(thread, ply, alpha, beta, depth - 4, lastMove, PV_NODE);
        if (thread.isStopped()) return 0;
        verified = second >= beta;
      }
      if (verified) {
        ++counters.nullcuts;
        storeNode(thread, ply, depth, NULL_MOVE, score, TT_LOWER);
        return score;
      }
    }
    // The piece that the parent moved with a reduction makes the threat: have the parent look
    // again.
    if (lastMove.isReduced() && threat && threat.from() == lastMove.to()) return -MATE;
  }

  // Step 9. Checks are searched a ply deeper.
  NodeTerms terms;
  terms.lastMove = lastMove;
  terms.depth = depth;
  terms.newDepth = inCheck && !own.isBareKing() ? depth : depth - 1;
  if (threat) terms.threatSquare = threat.to();

  // Step 10. Internal iterative deepening, when there is no move to begin with.
  if (!hashMove && depth > 1 && (type == PV_NODE || (type == CUT_NODE && terms.newDepth > 2))) {
    Score score;
    {
      const NodeMeter meter(thread, counters.iidnodes);
      score = alphaBeta(thread, ply, alpha, beta, terms.newDepth - 2, lastMove, type);
    }
    if (thread.isStopped()) return 0;
    const Move move = pv[0];
    if (score > MATE_BOUND && score >= beta) {
      thread.mateKiller[ply] = move.identity();
      return score;
    }
    if (score < -MATE_BOUND && score < alpha) return score;
    if (move && isMove(board, move, lastMove)) hashMove = move.identity();
  }

  // What every move below shares: makes it, searches it, and takes it back.
  const SavedState saved = board.save();
  Score best = -MATE;
  Move bestMove;
  int searched = 0;
  const auto make = [&](Move move) {
    state.tt.prefetchAfter(board, move);
    const Move made = makeMove(board, move);
    thread.evaluator.prefetchPawnEntry();
    return made;
  };
  const auto failHigh = [&](Move move, Score score) {
    storeNode(thread, ply, depth, move, score, TT_LOWER);
    pv.set(move);
    return score;
  };
  const auto raiseAlpha = [&](Move move, Score score) {
    pv.set(move, thread.pv[ply + 1]);
    ++counters.raises;
    alpha = score;
  };

  // Step 11. The hash move, before any move is generated.
  if (hashMove && !inCheck) {
    const Move move = make(hashMove);
    if (!move) {
      hashMove = NULL_MOVE;
    } else {
      const int childDepth = terms.newDepth + extension(board, terms, type, move, 3);
      const Score score = -alphaBeta(thread, ply + 1, -beta, -alpha, childDepth, move, -type);
      unmakeMove(board, move, saved);
      if (thread.isStopped()) return 0;
      if (score >= beta) {
        // 29000 exactly is quiescence saying that it did not look for more.
        if (score > MATE_BOUND) thread.mateKiller[ply] = move.identity();
        if (move.isQuiet()) thread.addKiller(ply, move);
        ++counters.cutnodes;
        ++counters.firstcuts;
        return failHigh(move, score);
      }
      best = score;
      bestMove = move;
      if (score > alpha) raiseAlpha(move, score);
      ++searched;
      if (type == CUT_NODE) type = ALL_NODE;
    }
  }

  // Step 12. A move that mated at this ply before, unless it hangs.
  if (const Move killer = thread.mateKiller[ply];
      killer && !killer.isSameAs(hashMove) && type != PV_NODE && !inCheck &&
      isMove(board, killer, lastMove) &&
      (killer.captured().value() > board.at(killer.from()).value() ||
       !losesMaterial(board, board.side, killer))) {
    if (const Move move = make(killer)) {
      const Score score = -alphaBeta(thread, ply + 1, -beta, 1 - beta, depth - 1, move, -type);
      unmakeMove(board, move, saved);
      if (thread.isStopped()) return 0;
      if (score >= beta) return failHigh(move, score);
      thread.mateKiller[ply] = NULL_MOVE;
    }
  }

  // Step 13. Futility and reductions: what late moves can be expected to do.
  if (board.material(~board.side).hasPieces() && depth <= 4 && type != PV_NODE && !inCheck &&
      alpha > -WIN_BOUND && alpha < WIN_BOUND) {
    const Score score = thread.evaluator.evaluate();
    if (score <= alpha) terms.futility = score + FUTILITY_MARGIN[depth];
  }
  terms.mayReduce = depth >= 2 && !inCheck;
  if (terms.mayReduce) {
    thread.evaluator.probePawnHash();
    terms.passedFiles = thread.evaluator.pawnEntry().sides[board.side].passedFiles;
  }

  // Step 14. Move generation; a forced reply is searched a ply deeper.
  MovePicker picker(thread, ply);
  if (inCheck) {
    if (picker.startEvasions(lastMove) == 1 && !own.isBareKing()) ++terms.newDepth;
    picker.orderEvasions(hashMove);
  } else {
    picker.startMain(hashMove, threat);
  }

  // Step 15. The moves.
  const Square king = board.kingSquare(board.side);
  while (Move move = picker.next()) {
    if (!inCheck && uncovers(board, king, move.from(), move.to())) continue;

    // a. Stop.
    if (thread.isStopped()) return 0;

    // b. Hopeless moves of an all node.
    if (type == ALL_NODE && isFutile(board, terms, alpha, move)) {
      best = std::max(best, terms.futility);
      ++searched;
      ++counters.pnodes;
      continue;
    }
    picker.prefetchNext();

    // c. Share what remains with idle threads.
    if (depth >= state.minSplitDepth && searched > 0 &&
        thread.splitNodesInUse < SearchThread::SPLIT_NODES) {
      if (SplitNode* const node = trySplit(thread)) {
        const NodeResult result = searchSplit(thread, *node, terms, type, ply, beta,
                                              {alpha, best, bestMove}, move, picker);
        if (thread.isStopped()) return 0;
        alpha = result.alpha;
        best = result.best;
        bestMove = result.bestMove;
        if (best < beta) break;
        if (best > MATE_BOUND) thread.mateKiller[ply] = bestMove.identity();
        if (bestMove.isQuiet() && !inCheck) thread.addKiller(ply, bestMove);
        return failHigh(bestMove, best);
      }
    }

    // d. Make it.
    const bool isLate =
        terms.mayReduce && picker.stage() >= MovePicker::QUIET && !isActive(board, terms, move);
    move = make(move);
    if (!move) continue;

    // e. Extensions.
    const int extended = extension(board, terms, type, move, 1);
    const int childDepth = terms.newDepth + extended;

    // f. Late moves are tried with less depth first.
    if (isLate && extended == 0 && !move.isCheck()) {
      ++counters.reducetries;
      const Score score = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, childDepth - 1,
                                     move.with(Move::REDUCED), CUT_NODE);
      if (thread.isStopped() || score <= alpha) {
        unmakeMove(board, move, saved);
        if (thread.isStopped()) return 0;
        if (score > best) {
          best = score;
          bestMove = move;
        }
        ++searched;
        type = ALL_NODE;
        continue;
      }
      ++counters.reducefails;
    }

    // g. Principal variation search: later moves only have to show that they are not better.
    bool open = true;
    Score score;
    if (alpha + 1 < beta && searched > 0) {
      score = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, childDepth, move, CUT_NODE);
      open = score > alpha && !thread.isStopped();
      if (open) {
        score = -alphaBeta(thread, ply + 1, -beta, -alpha, childDepth, move, PV_NODE);
      }
    } else {
      score = -alphaBeta(thread, ply + 1, -beta, -alpha, childDepth, move, -type);
    }

    // h. Take it back and see what it was worth.
    unmakeMove(board, move, saved);
    if (thread.isStopped()) return 0;
    if (score >= beta) {
      ++counters.cutnodes;
      if (searched == 0) ++counters.firstcuts;
      if (picker.stage() == MovePicker::KILLER1 || picker.stage() == MovePicker::KILLER2) {
        ++counters.killercuts;
      }
      if (score > MATE_BOUND) thread.mateKiller[ply] = move.identity();
      if (move.isQuiet() && !inCheck) thread.addKiller(ply, move);
      return failHigh(move, score);
    }
    if (score > best) {
      best = score;
      bestMove = move;
      if (score > alpha) raiseAlpha(move, score);
    }
    ++searched;
    if (type == CUT_NODE) type = ALL_NODE;
  }

  // Step 16. Mate or stalemate.
  if (searched == 0) {
    ++counters.endnodes;
    return inCheck ? Score::matedIn(ply) : DRAW;
  }

  // Step 17. A fail low that one ply more may mend.
  if (best <= oldAlpha && deservesSecondLook(board, lastMove, bestMove)) {
    if (const Move move = make(bestMove)) {
      const Score score =
          -alphaBeta(thread, ply + 1, -beta, -alpha, terms.newDepth + 1, move, -type);
      unmakeMove(board, move, saved);
      if (thread.isStopped()) return 0;
      if (score >= beta) {
        storeNode(thread, ply, depth, move, score, TT_LOWER);
        return score;
      }
      if (score > best) {
        best = score;
        if (score > alpha) pv.set(move, thread.pv[ply + 1]);
      }
    }
  }

  // Step 18. Keep the result.
  if (best <= oldAlpha) {
    ++counters.allnodes;
    storeNode(thread, ply, depth, bestMove, best, TT_UPPER);
  } else {
    ++counters.pvnodes;
    if (bestMove.isQuiet() && !inCheck) thread.addKiller(ply, bestMove);
    storeNode(thread, ply, depth, bestMove, best, TT_EXACT);
  }
  return best;
}

}  // namespace ombrin
