#pragma once

#include "board/move.h"
#include "board/score.h"
#include "search/node_terms.h"
#include "search/search_thread.h"

namespace ombrin {

// Both search the thread's board to a score for the side to move, leave the node's line in
// pv[ply] and the board as it was. lastMove is the move that led here, as makeMove returned it
// (null after a null move): its flags tell whether the side to move is in check. A search that is
// stopped returns 0, and the caller must look at the stop flag before it uses a result.

// Full-width search (ply >= 1, alpha < beta, depth in plies) by principal variation search; at
// depth 0 it hands over to quiesce.
Score alphaBeta(SearchThread& thread, int ply, Score alpha, Score beta, int depth, Move lastMove,
                NodeType type);

// Captures, answers to checks, and, while the budget lasts, quiet checks.
Score quiesce(SearchThread& thread, int ply, Score alpha, Score beta, int budget, Move lastMove);

// The budget for quiet checks with which the main search calls quiesce.
inline constexpr int QUIESCENCE_BUDGET = 4;

}  // namespace ombrin
