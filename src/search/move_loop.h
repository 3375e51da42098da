// What happens to a move of a node of the main search, in one place: whether it is searched, how
// deep, and with which windows. An ordinary node and a split node differ only in where the moves
// come from and where the results go.
#pragma once

#include "board/attacks.h"
#include "board/make_move.h"
#include "search/alpha_beta.h"
#include "search/search_state.h"
#include "search/selectivity.h"

namespace ombrin {

// A move that is to be tried, and what may be done to it.
struct Candidate {
  Move move;  // null: there is none left
  bool mayBePruned = true;
  bool isLate = false;  // comes behind the captures and killers
};

// Makes the move, with what the child will ask of the memory on its way. The null move, and an
// unchanged board, when it is not legal.
inline Move makeAhead(SearchThread& thread, Move move) {
  thread.state.tt.prefetchAfter(thread.board, move);
  const Move made = makeMove(thread.board, move);
  thread.evaluator.prefetchPawnEntry();
  return made;
}

// Searches a node's moves one after the other, until there are none left, the source has heard
// enough, or the thread is stopped. The board stands at the node.
//
// What a source is asked, in this order:
//   Candidate next()        the next move
//   NodeType type()         what the node is by now
//   Score alpha()           what a move has to beat; below beta
//   void prune(score)       a move was not searched, because it can reach no more than that
//   bool handOver(move)     true when it has taken care of this move and of all that follow
//   bool hasSearched()      has the node searched a move before?
//   bool judge(move, score, reduced)  a move was searched, or reduced and not good enough for more;
//                           false when that decides the node
// and PAWN_ENDING_EXTENSION, the plies for a capture of the last piece.
template <typename Source>
void searchMoves(SearchThread& thread, const NodeTerms& node, Source& source) {
  Board& board = thread.board;
  SearchCounters& counters = thread.counters;
  const int ply = node.ply;
  const SavedState saved = board.save();
  const Square king = board.kingSquare(board.side);
  for (;;) {
    // a. The next move.
    const Candidate candidate = source.next();
    Move move = candidate.move;
    if (!move) return;
    if (!node.inCheck() && uncovers(board, king, move.from(), move.to())) continue;
    if (thread.isStopped()) return;
    const Score alpha = source.alpha();

    // b. Hopeless moves of an all node.
    if (source.type() == ALL_NODE && candidate.mayBePruned && isFutile(board, node, alpha, move)) {
      ++counters.pnodes;
      source.prune(node.futility);
      continue;
    }

    // c. Share what remains with idle threads.
    if (source.handOver(move)) return;

    // d. Make it.
    const bool isLate = node.mayReduce && candidate.isLate && !isActive(board, node, move);
    move = makeAhead(thread, move);
    if (!move) continue;

    // e. Extensions.
    const int extended = extension(board, node, source.type(), move, Source::PAWN_ENDING_EXTENSION);
    const int depth = node.newDepth + extended;

    // f. Late moves are tried with less depth first.
    const bool reduced = isLate && extended == 0 && !move.isCheck();
    bool open = true;
    Score score;
    if (reduced) {
      ++counters.reducetries;
      score = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, depth - 1, move.with(Move::REDUCED),
                         CUT_NODE);
      open = score > alpha && !thread.isStopped();
      if (open) ++counters.reducefails;
    }
    const bool failedReduced = !open;

    // g. Principal variation search: later moves only have to show that they are not better.
    if (open) {
      NodeType type = -source.type();
      if (alpha + 1 < node.beta && source.hasSearched()) {
        score = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, depth, move, CUT_NODE);
        open = score > alpha && !thread.isStopped();
        type = PV_NODE;
      }
      if (open) score = -alphaBeta(thread, ply + 1, -node.beta, -alpha, depth, move, type);
    }

    // h. Take it back and see what it was worth.
    unmakeMove(board, move, saved);
    if (thread.isStopped() || !source.judge(move, score, failedReduced)) return;
  }
}

}  // namespace ombrin
