// Whatever setFen accepts is a position in which all that must hold does.
#include "board/attacks.h"
#include "board/display.h"
#include "board/exchange.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/perft.h"
#include "board/self_check.h"
#include "fuzz_input.h"

using namespace ombrin;

namespace {

void checkMoves(Board& board) {
  const SavedState saved = board.save();
  const std::uint64_t hash = board.hash;
  const auto squares = board.squares;
  const auto lists = board.pieceSquare;
  const MoveList legal = legalMoves(board);
  for (const Move move : pseudoLegalMoves(board, board.lastMove())) {
    require(isMove(board, move), "a generated move is accepted");
    see(board, board.side, move);
    const Move made = makeMove(board, move);
    require(!made == !legal.contains(move), "a legal move can be made");
    if (made) {
      checkBoard(board, "fuzz", made);
      require(board.phash == board.computePawnHash(), "the pawn key is right");
      require(!isAttacked(board, board.side, board.kingSquare(~board.side)), "the king is safe");
      require(made.isCheck() == isAttacked(board, ~board.side, board.kingSquare(board.side)),
              "the check flags are right");
      unmakeMove(board, move, saved);
    }
    require(board.hash == hash && board.squares == squares && board.pieceSquare == lists,
            "unmaking restores the board");
  }
  perftCount(board, 2, board.lastMove());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static Board board;
  if (!setFen(board, textOf(data, size))) return 0;
  checkBoard(board, "fuzz", NULL_MOVE);
  Board again;
  require(setFen(again, writeFen(board)).error.empty(), "a position that is written is read back");
  require(again.hash == board.hash, "and is the same");
  printBoard(board, stdout);
  checkMoves(board);
  board.compactPieces();
  checkMoves(board);
  return 0;
}
