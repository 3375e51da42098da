// What the nodes of the main search and of quiescence have in common.
#pragma once

#include <algorithm>
#include <optional>

#include "board/board.h"
#include "board/geometry.h"
#include "board/score.h"
#include "search/search_state.h"
#include "search/search_thread.h"
#include "search/tt.h"

namespace ombrin {

// When the opponent has just taken back the move before his last one, the side to move can do the
// same and have the position repeated. The null move when it is not so, or when the returned piece
// stands in the way.
inline Move moveBack(const Board& board) {
  if (board.reversiblePlies() <= 2) return NULL_MOVE;
  const Move last = board.moveHistory[board.ply - 1];
  const Move own = board.moveHistory[board.ply - 2];
  const Move first = board.moveHistory[board.ply - 3];
  if (last.from() != first.to() || last.to() != first.from() || own.isCastling()) {
    return NULL_MOVE;
  }
  if (stepAlong(own.to() - own.from()) == stepAlong(own.to() - first.from())) return NULL_MOVE;
  return {own.to(), own.from()};
}

// The distance in plies from history entry `from` back to an earlier one with the current key, 0
// when there is none. Looks no further than the last irreversible move.
inline int pliesToRepetition(const Board& board, int from) {
  const int oldest = board.lastIrreversible;
  for (int back = 4; from - back >= oldest; back += 2) {
    if (board.hashHistory[from - back] == board.hash) return back;
  }
  return 0;
}

// Is the node a draw by the fifty-move rule, for want of material, or by repetition? Beyond ply 3
// one earlier occurrence of the position is enough.
inline bool isDraw(const Board& board, int ply) {
  if (board.reversiblePlies() > 99) return true;
  const Material white = board.WhiteMaterial;
  const Material black = board.BlackMaterial;
  if (!white.hasPawnRookOrQueen() && !black.hasPawnRookOrQueen() &&
      white.minors() + black.minors() < 2) {
    return true;
  }
  const int current = static_cast<int>(board.ply);
  const int once = pliesToRepetition(board, current);
  if (once == 0) return false;
  return ply > 3 || pliesToRepetition(board, current - once) != 0;
}

// No line from here can be better than a mate by the next move or worse than being mated now.
// Raises alpha, or returns the score of a node that this decides.
inline std::optional<Score> pruneByMateDistance(int ply, bool inCheck, Score& alpha, Score beta) {
  const Score best = Score::mateIn(ply + 1);
  if (alpha > MATE_BOUND && alpha >= best) return best;
  if (beta < -MATE_BOUND) {
    const Score later = Score::matedIn(ply + 2);
    const Score bound = inCheck && alpha < later ? Score::matedIn(ply) : later;
    if (beta <= bound) return bound;
    alpha = std::max(alpha, bound);
  }
  return std::nullopt;
}

// Does the entry, whose score is `score` seen from the root, decide a node of that depth? An entry
// that is not deep enough still does when it knows a win or a loss.
inline bool decides(const TtEntry& entry, Score score, int depth, Score alpha, Score beta) {
  if (entry.depth >= depth) {
    return entry.bound == TT_EXACT || (entry.bound == TT_LOWER && score >= beta) ||
           (entry.bound == TT_UPPER && score <= alpha);
  }
  return (score >= WIN_BOUND && entry.bound != TT_UPPER && score >= beta) ||
         (score <= -WIN_BOUND && entry.bound != TT_LOWER && score < alpha);
}

inline void storeNode(SearchThread& thread, int ply, int depth, Move move, Score score,
                      Bound bound) {
  thread.state.tt.store(thread.board, {move, score.relativeToNode(ply), depth, bound},
                        thread.counters.tt);
}

// Pawns and pieces of both sides.
inline int menOnBoard(const Board& board) {
  return board.WhiteMaterial.men() + board.BlackMaterial.men();
}

}  // namespace ombrin
