#include "board/perft.h"

#include <cinttypes>

#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/notation.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr LogChannel CHANNEL{"perft"};

}  // namespace

std::uint64_t perftCount(Board& board, int depth, Move lastMove) {
  const SavedState saved = board.save();
  std::uint64_t count = 0;
  for (const Move move : legalMoves(board, lastMove)) {
    const Move made = makeMove(board, move);
    count += depth <= 1 ? 1 : perftCount(board, depth - 1, made);
    unmakeMove(board, move, saved);
  }
  return count;
}

std::uint64_t perft(Board& board, int depth) {
  const std::uint64_t count = perftCount(board, depth, board.lastMove());
  logInfo(CHANNEL, "perft %i=%10" PRIu64 "\n", depth, count);
  return count;
}

void divide(Board& board, int depth, Move lastMove) {
  print(stdout, "----divide---\n");
  const SavedState saved = board.save();
  std::uint64_t total = 0;
  for (const Move move : legalMoves(board, lastMove)) {
    const Move made = makeMove(board, move);
    const std::uint64_t count = depth <= 1 ? 1 : perftCount(board, depth - 1, made);
    unmakeMove(board, move, saved);
    total += count;
    print(stdout, "%-8s %10" PRIu64 "\n", moveToText(made).c_str(), count);
  }
  print(stdout, "-------------------\n");
  print(stdout, "total    %10" PRIu64 "\n", total);
}

}  // namespace ombrin
