// A position and moves from it, a byte each: whatever is made and unmade leaves no trace, the
// evaluation does not know colours, and a small search ends as it should.
#include <memory>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/self_check.h"
#include "egbb/bitbases.h"
#include "eval/evaluator.h"
#include "fuzz_input.h"
#include "search/search_controller.h"
#include "search/tt.h"
#include "support/mirrored_board.h"
#include "support/random_positions.h"

using namespace ombrin;

namespace {

struct Searcher {
  Searcher() {
    search.setThreads(1);
    search.silence();
  }
  Tt tt{256};
  Bitbases bitbases;
  SearchObserver observer;
  SearchController search{tt, bitbases};
};

void checkUnmaking(Board& board) {
  static Board before;
  before.copyFrom(board);
  const SavedState saved = board.save();
  for (const Move move : legalMoves(board)) {
    makeMove(board, move);
    require(board.hash == board.computeHash(), "the key is right after a move");
    require(board.phash == board.computePawnHash(), "the pawn key is right after a move");
    for (const Color color : {WHITE, BLACK}) {
      require(board.material(color) == board.computeMaterial(color), "material is right");
    }
    unmakeMove(board, move, saved);
    require(board.hash == before.hash && board.phash == before.phash, "unmaking restores keys");
    require(board.squares == before.squares, "unmaking restores squares");
    require(board.pieceSquare == before.pieceSquare, "unmaking restores lists");
    require(board.byColor == before.byColor && board.byType == before.byType,
            "unmaking restores sets");
    require(
        board.WhiteMaterial == before.WhiteMaterial && board.BlackMaterial == before.BlackMaterial,
        "unmaking restores material");
    require(board.side == before.side && board.ply == before.ply && board.rights == before.rights &&
                board.epSquare == before.epSquare &&
                board.lastIrreversible == before.lastIrreversible &&
                board.promotedCount == before.promotedCount,
            "unmaking restores the state");
  }
}

void checkEvaluation(const Board& board) {
  static Board position;
  static Board twin;
  static const auto evaluatorOf = [](Board& evaluated) {
    auto evaluator = std::make_unique<Evaluator>(evaluated);
    evaluator->pawnHash().resize(PawnHash::FULL_SIZE);
    return evaluator;
  };
  static const auto evaluator = evaluatorOf(position);
  static const auto twinEvaluator = evaluatorOf(twin);
  position.copyFrom(board);
  // A captured piece keeps its place in the lists, where the twin has none and the picks of a
  // bishop by its place may meet it.
  position.compactPieces();
  const Score score = evaluator->evaluate();
  require(evaluator->evaluateUncached() == score, "the cache holds what would be computed");
  if (isPairAskedInTurn(position)) return;
  mirror(position, true, false, twin);
  require(twinEvaluator->evaluate() == score, "the evaluation does not know colours");
}

void checkSearch(Board& board) {
  static Searcher searcher;
  const bool hasMove = !legalMoves(board).empty();
  searcher.tt.clear();
  searcher.search.search(board, {.depth = 3, .infinite = true}, searcher.observer);
  const Move best = searcher.search.report().bestMove;
  require(best.isNull() == !hasMove, "a search finds a move where there is one");
  require(!hasMove || isMove(board, best), "and it is a move");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static Board board;
  std::string_view text = textOf(data, size);
  if (!setFen(board, takeLine(text))) return 0;
  checkSearch(board);
  for (const char byte : text.substr(0, 64)) {
    checkUnmaking(board);
    checkEvaluation(board);
    const MoveList legal = legalMoves(board);
    if (legal.empty()) return 0;
    const Move made = makeMove(board, legal[static_cast<unsigned char>(byte) % legal.size()]);
    board.moveHistory[board.ply - 1] = made;  // with its check flags
    checkBoard(board, "fuzz", board.lastMove());
  }
  checkUnmaking(board);
  checkEvaluation(board);
  checkSearch(board);
  return 0;
}
