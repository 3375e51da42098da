#include "search/root_search.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/notation.h"
#include "search/alpha_beta.h"
#include "search/node.h"
#include "search/statistics.h"
#include "util/format.h"
#include "util/log.h"

namespace ombrin {

namespace {

constexpr LogChannel SEARCH_LOG{"search"};
constexpr int DEFAULT_MAX_DEPTH = 120;
// The deepest iteration that is begun whatever the settings say: the table counts no further.
constexpr int LAST_DEPTH = 30000;

// Logs a progress line, and `rest` behind it.
void logProgress(const SearchState& state, Score score, const std::string& suffix,
                 const std::string& rest = {}) {
  if (state.quiet) return;
  const std::string line = progressLine(state, state.clock.elapsed(), score, suffix);
  logInfo(SEARCH_LOG, "%s%s", line.c_str(), rest.c_str());
}

std::string lineText(const PvLine& line) {
  std::string text;
  for (const Move move : line.moves()) text += moveToText(move) + ' ';
  return text;
}

// The pseudo-legal moves of the root, in the order in which the picker would have them.
MoveList generateRootMoves(const Board& board, Move lastMove) {
  if (lastMove.isCheck()) return pseudoLegalMoves(board, lastMove);
  MoveList moves;
  moves.append([&board](Move* out) {
    return genKingQuiet(board, genQuiet(board, genCaptures(board, out)));
  });
  return moves;
}

// Highest key first; of equals, the one that came first.
void sortByKey(std::span<RootMove> moves) {
  std::stable_sort(moves.begin(), moves.end(),
                   [](const RootMove& a, const RootMove& b) { return a.key > b.key; });
}

void setUpRoot(SearchState& state) {
  Board& board = state.mainThread().board;
  const Move lastMove = board.lastMove();
  state.bestScore = lastMove.isCheck() ? -MATE : DRAW;
  state.rootMoves.clear();
  const SavedState saved = board.save();
  for (const Move move : generateRootMoves(board, lastMove)) {
    if (uncovers(board, board.kingSquare(board.side), move.from(), move.to())) continue;
    const int exchange = see(board, board.side, move);
    const Move made = makeMove(board, move);
    if (!made) continue;
    unmakeMove(board, made, saved);
    state.rootMoves.push_back({made, exchange + 1000, exchange});
  }
  sortByKey(state.rootMoves);
}

// Makes `move` and the line found below it the search's line, as far as its moves can be played:
// the table may have contributed one that cannot.
void setRootLine(SearchState& state, Move move, int depth) {
  Board& board = state.mainThread().board;
  const PvLine& found = state.mainThread().pv[1];
  std::array<SavedState, PvLine::CAPACITY> saved;
  std::array<Move, PvLine::CAPACITY> line;
  int length = 0;
  while (move && length < PvLine::CAPACITY - 1) {
    saved[length] = board.save();
    const Move made = makeMove(board, move);
    if (!made) break;
    line[length++] = made;
    move = found[length - 1];
    if (!isMove(board, move, made)) break;
    move = move.identity();
  }
  for (int i = length - 1; i >= 0; --i) unmakeMove(board, line[i], saved[i]);
  state.rootPv.set(std::span(line.data(), length));
  state.rootPvDepth = depth;
}

// A root move has become best.
void report(SearchState& state, Move move, Score score, int depth) {
  state.bestScore = score;
  setRootLine(state, move, depth);
  state.observer->reportBestLine(state.report());
  logProgress(state, score, "", lineText(state.rootPv) + "\n");
  storeNode(state.mainThread(), 0, depth, move.identity(), score, TT_LOWER);
}

// Writes the line back into the table, where other entries may have pushed parts of it out.
void storeRootLine(SearchState& state, int depth) {
  SearchThread& thread = state.mainThread();
  Board& board = thread.board;
  std::array<SavedState, PvLine::CAPACITY> saved;
  Score score = state.bestScore;
  int length = 0;
  for (;; ++length, score = -score) {
    const Move move = state.rootPv[length];
    int entryDepth = depth - length;
    if (TtEntry entry; state.tt.probe(board, entry)) {
      if (entry.bound == TT_EXACT && entry.depth > entryDepth) ++entryDepth;
    }
    state.tt.erase(board);
    storeNode(thread, length, entryDepth, move.identity(), score, TT_EXACT);
    if (!move) break;
    saved[length] = board.save();
    if (!makeMove(board, move)) break;
  }
  for (int i = length - 1; i >= 0; --i) unmakeMove(board, state.rootPv[i], saved[i]);
}

// Why the search ends after an iteration; empty when it goes on.
std::string reasonToEnd(SearchState& state, int depth) {
  const SearchClock& clock = state.clock;
  if (state.stopIfSpent()) return "stopped\n";
  if (clock.isInfinite()) return "";
  if (depth + 1 >= state.bestScore.pliesToMate()) return "(optimal)\n";
  if (state.rootMoves.size() == 1 && depth > 1) return "single move\n";
  if (clock.iterationTimeout()) return "iteration timeout\n";
  return "";
}

// Searches depth after depth.
void deepen(SearchState& state) {
  const bool parallel = state.threadCount > 1;
  std::uint64_t nodesBefore = 1;
  for (int depth = 1; depth <= state.maxDepth; ++depth) {
    state.depth = depth;
    state.iteration.store(depth, std::memory_order_relaxed);
    state.clock.setIteration(depth);
    state.bitbaseLimits.ply = std::max(2, 2 * depth / 3);
    state.minSplitDepth = parallel ? 1 : NO_SPLIT_DEPTH;

    searchRoot(state, -MATE, MATE, depth);
    if (state.rootPvDepth == depth) storeRootLine(state, depth);
    state.clock.iterationDone(state.bestScore);

    const std::string reason = reasonToEnd(state, depth);
    if (!reason.empty()) {
      logProgress(state, state.bestScore, reason);
      return;
    }
    const std::uint64_t nodes = state.nodes();
    std::string branching;
    append(branching, "/%2.1f\n", static_cast<double>(nodes) / static_cast<double>(nodesBefore));
    logProgress(state, state.bestScore, "ok", branching);
    nodesBefore = nodes;
    sortByKey(std::span(state.rootMoves).subspan(1));
  }
}

}  // namespace

Score searchRoot(SearchState& state, Score alpha, Score beta, int depth) {
  SearchThread& thread = state.mainThread();
  Board& board = thread.board;
  SearchClock& clock = state.clock;
  std::vector<RootMove>& moves = state.rootMoves;
  const SavedState saved = board.save();
  const int count = static_cast<int>(moves.size());
  const auto search = [&](Move move, Score low, Score high, NodeType type) {
    return -alphaBeta(thread, 1, -high, -low, depth - 1, move, type);
  };

  // The search below unwinds on the thread's own flag, which another processor may see before the
  // search's: a score counts only when neither is set.
  const auto isStopped = [&] { return thread.isStopped() || state.isStopped(); };

  for (int i = 0; i < count; ++i) {
    // Step 1. Make the move.
    if (i > 0 && state.stopIfSpent()) return alpha;
    const Move move = makeMove(board, moves[i].move);
    const std::uint64_t nodesBefore = state.nodes();
    state.observer->reportCurrentMove(
        {depth, i, move, nodesBefore, clock.elapsed(), state.hashFull()});

    // Step 2. Search it: the first with the full window, the others with a null window first.
    Score score;
    if (i == 0) {
      score = search(move, alpha, beta, PV_NODE);
    } else {
      score = search(move, alpha, alpha + 1, CUT_NODE);
      if (score > alpha && !isStopped()) {
        clock.failHigh();
        logProgress(state, score, "++" + std::to_string(i + 1) + "/" + std::to_string(count) + " ",
                    moveToText(move) + "\n");
        score = search(move, alpha, beta, PV_NODE);
        if (!isStopped()) {
          if (score <= alpha) logProgress(state, score, "--", moveToText(move) + "\n");
          clock.resolved();
        }
      }
    }
    unmakeMove(board, move, saved);
    if (i == 0 && (state.stopIfSpent() || isStopped())) return DRAW;
    if (isStopped()) return alpha;

    // Step 3. Keep what it cost and what it is worth.
    moves[i].key = static_cast<std::int64_t>(state.nodes() - nodesBefore);
    moves[i].score = score;
    if (i > 0 && score <= alpha) continue;

    // Step 4. It is the best so far.
    std::swap(moves[0], moves[i]);
    report(state, move, score, depth);
    if (i == 0) clock.firstScore(score);
    alpha = score;
  }

  // Step 5. The whole root has been searched.
  storeNode(thread, 0, depth, moves[0].move.identity(), alpha, TT_EXACT);
  return alpha;
}

void iterate(SearchState& state) {
  // Step 1. The root moves.
  state.maxDepth = state.maxDepth < 1 ? DEFAULT_MAX_DEPTH : std::min(state.maxDepth, LAST_DEPTH);
  setUpRoot(state);
  state.rootMoveCount.store(static_cast<int>(state.rootMoves.size()), std::memory_order_relaxed);
  if (!state.quiet) {
    logInfo(SEARCH_LOG, "eval=%i\n", state.mainThread().evaluator.evaluate().value());
  }

  // Step 2. The iterations.
  if (!state.rootMoves.empty()) deepen(state);

  // Step 3. The end: everyone stops, and the world is told.
  state.requestStop();
  const std::uint64_t milliseconds = state.clock.elapsed();
  state.observer->finished(state.report());
  if (!state.quiet && logLevel.load(std::memory_order_relaxed) <= 1) {
    logInfo(SEARCH_LOG, "%s", statisticsBlock(state, milliseconds).c_str());
  }
}

}  // namespace ombrin
