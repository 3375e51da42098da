#include <algorithm>

#include "board/attacks.h"
#include "board/geometry.h"
#include "board/make_move.h"
#include "search/alpha_beta.h"
#include "search/move_picker.h"
#include "search/node.h"

namespace ombrin {

namespace {

// What a quiet evasion may be expected to add to the static score, and what a capture may be
// expected to win beyond its victim.
constexpr int EVASION_MARGIN = 50;
constexpr int DELTA_MARGIN = 250;

// Can none of the pawns move (en passant aside), and the king neither? For a side that has nothing
// else and is not in check.
bool isStalemate(const Board& board) {
  const Color side = board.side;
  bool canMove = false;
  board.forEach(side, PAWN, [&](Piece, Square from) {
    const Square ahead = from + forward(side);
    canMove = canMove || board.at(ahead).isEmpty() || board.at(ahead - RIGHT).isOf(~side) ||
              board.at(ahead + RIGHT).isOf(~side);
  });
  if (canMove) return false;
  const Square king = board.kingSquare(side);
  return std::none_of(KING_STEPS.begin(), KING_STEPS.end(), [&](Delta step) {
    return board.at(king + step).mayBeEnteredBy(side) && !isAttacked(board, ~side, king + step);
  });
}

}  // namespace

Score quiesce(SearchThread& thread, int ply, Score alpha, Score beta, int budget, Move lastMove) {
  // Step 1. Stop.
  if (thread.isStopped()) return 0;
  SearchCounters& counters = thread.counters;
  SearchState& state = thread.state;
  Board& board = thread.board;
  PvLine& pv = thread.pv[ply];
  thread.seldepth = std::max(thread.seldepth, ply);
  ++counters.qnodes;
  pv.clear();

  // Step 2. The opponent moved back: so can we, and have a draw.
  if (beta <= 0 && ply >= 3 && !lastMove.isCapture()) {
    if (const Move back = moveBack(board)) {
      pv.set(back);
      return DRAW;
    }
  }

  // Step 3. Draws.
  if (isDraw(board, ply)) return DRAW;

  // Step 4. Stalemate of a side that has only pawns, which no generator would notice here.
  const bool inCheck = lastMove.isCheck();
  const Color side = board.side;
  if (!inCheck && !board.material(side).hasPieces() && isStalemate(board)) return DRAW;

  // Step 5. Mate distance.
  const bool nullWindow = beta == alpha + 1;
  if (nullWindow) {
    if (const auto score = pruneByMateDistance(ply, inCheck, alpha, beta)) return *score;
  }
  const Score oldAlpha = alpha;

  // Step 6. The end of the tables.
  if (ply > MAX_PLY) return thread.evaluator.evaluate();

  // What step 10 may stand pat on. Worked out here, it fills the time until the table's answer is
  // there, which is more than what the answers that make it useless waste.
  Score standing = 0;
  if (!inCheck && !lastMove.isXray()) standing = thread.evaluator.evaluate();

  // Step 7. The table. Its move is only used to sort moves that a generator has made.
  int storedDepth = budget - QUIESCENCE_BUDGET;
  Move hashMove;
  ++counters.probes;
  if (TtEntry entry; state.tt.probe(board, entry)) {
    ++counters.hits;
    hashMove = entry.move.identity();
    const Score score = entry.score.relativeToRoot(ply);
    if (nullWindow && decides(entry, score, storedDepth, alpha, beta)) {
      ++counters.cuts;
      pv.set(entry.move);
      return score;
    }
  }

  std::optional<MovePicker> moves;
  Score best = -MATE;
  int childBudget = budget;
  if (inCheck) {
    // Step 8. In check: the evasions, quiet ones only where the static score is near enough.
    MovePicker& picker = moves.emplace(MovePicker::evasions(thread, ply, lastMove, hashMove));
    const int evasions = picker.evasionCount();
    if (nullWindow && evasions > 0) {
      const Score score = thread.evaluator.evaluate();
      if (alpha > score + EVASION_MARGIN) {
        picker.dropQuietEvasions();
        if (picker.evasionCount() < evasions) best = score;
      }
    }
    const int left = picker.evasionCount();
    if (budget < QUIESCENCE_BUDGET && left != 2) childBudget = left < 2 ? 1 : 0;
  } else if (lastMove.isXray()) {
    // Step 9. A slider aims at the king through one piece: every move counts, and nothing stands
    // pat.
    moves.emplace(MovePicker::all(thread, ply));
    childBudget = 0;
    storedDepth = 1;
  } else {
    // Step 10. Standing pat, captures, and checks while the budget lasts.
    if (beta <= -MATE_BOUND) return -MATE_BOUND;
    if (alpha >= MATE_BOUND) {
      best = MATE_BOUND;
    } else {
      if (menOnBoard(board) <= state.bitbaseLimits.memory && !board.hasEnPassant()) {
        if (const auto answer = state.bitbases.probe(board)) return answer->relativeToRoot(ply);
      }
      best = standing;
      if (best >= beta) return best;
      alpha = std::max(alpha, best);
    }
    const bool prunes =
        nullWindow && board.WhiteMaterial.hasSlider() && board.BlackMaterial.hasSlider();
    const int threshold = prunes ? (alpha - best).value() - DELTA_MARGIN : 0;
    moves.emplace(MovePicker::quiescence(thread, ply, threshold, budget > 0, hashMove));
    if (moves->largestPruned() > 0) best = best + moves->largestPruned() + DELTA_MARGIN;
    childBudget = budget / 4;
  }

  // Step 11. The moves.
  const SavedState saved = board.save();
  const Square king = board.kingSquare(side);
  Move bestMove;
  while (Move move = moves->next()) {
    moves->prefetchNext();
    if (uncovers(board, king, move.from(), move.to())) continue;
    state.tt.prefetchAfter(board, move);
    move = makeMove(board, move);
    thread.evaluator.prefetchPawnEntry();
    if (!move) continue;
    Score score;
    bool open = true;
    if (beta > alpha + 1 && best > -MATE) {
      score = -quiesce(thread, ply + 1, -alpha - 1, -alpha, childBudget, move);
      open = score > alpha && !thread.isStopped();
    }
    if (open) score = -quiesce(thread, ply + 1, -beta, -alpha, childBudget, move);
    unmakeMove(board, move, saved);
    if (thread.isStopped()) return 0;

    if (score >= beta) {
      storeNode(thread, ply, storedDepth, move, score, TT_LOWER);
      if (score > MATE_BOUND) thread.mateKiller[ply] = move.identity();
      if (move.isQuiet() && !inCheck) thread.addKiller(ply, move);
      thread.lastCut[ply] = move.identity();
      pv.set(move);
      return score;
    }
    if (score > best) {
      best = score;
      bestMove = move;
      if (score > alpha) {
        pv.set(move, thread.pv[ply + 1]);
        alpha = score;
      }
    }
  }

  // Step 12. Mate, stalemate, or a result to keep.
  if (best == -MATE) {
    ++counters.endnodes;
    return inCheck ? Score::matedIn(ply) : DRAW;
  }
  storeNode(thread, ply, storedDepth, bestMove, best, best <= oldAlpha ? TT_UPPER : TT_EXACT);
  return best;
}

}  // namespace ombrin
