// Validation of move words that do not come from a generator.
#include "board/attacks.h"
#include "board/move_generation.h"

namespace ombrin {

namespace {

bool isEnPassantMove(const Board& board, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const Piece pawn = board.at(from);
  return board.hasEnPassant() && to == Square(board.epSquare) && to.relativeRank(board.side) == 5 &&
         board.at(to).isEmpty() && pawn.isPawnOf(board.side) &&
         (pawn.kind() & attacksOver(to - from)) != 0 &&
         move.captured() == board.at(move.enPassantVictim()) &&
         move.captured().isPawnOf(~board.side);
}

bool isCastlingMove(const Board& board, Move move) {
  const Color us = board.side;
  const Square king = board.kingSquare(us);
  const Square to = move.to();
  if (move.from() != king || move.isCapture()) return false;
  if (to == king + 2) {
    return (board.rights & kingSideRight(us)) != 0 && board.at(to).isEmpty() &&
           board.at(to - RIGHT).isEmpty();
  }
  return to == king - 2 && (board.rights & queenSideRight(us)) != 0 && board.at(to).isEmpty() &&
         board.at(to - RIGHT).isEmpty() && board.at(to + RIGHT).isEmpty();
}

// Steps and captures of a pawn, promotions included.
bool isPawnMove(const Board& board, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const Color us = board.side;
  if ((to.relativeRank(us) == 7) != move.isPromotion()) return false;
  if (move.isPromotion() && move.promotion() != QUEEN && move.promotion() != ROOK &&
      move.promotion() != BISHOP && move.promotion() != KNIGHT) {
    return false;
  }
  if (move.isCapture()) {
    return !move.isDoubleStep() && (board.at(from).kind() & attacksOver(to - from)) != 0;
  }
  const Delta ahead = forward(us);
  if (!move.isDoubleStep()) return to == from + ahead;
  return to == from + 2 * ahead && from.relativeRank(us) == 1 && board.at(from + ahead).isEmpty();
}

// A move of the side to move when it is not in check.
bool isMoveWithoutCheck(const Board& board, Move move) {
  const Color us = board.side;
  const Square from = move.from();
  const Square to = move.to();
  const Piece piece = board.at(from);
  if (!piece.isOf(us)) return false;
  if (move.isEnPassant()) {
    return !move.isCastling() && !move.isPromotion() && !move.isDoubleStep() &&
           isEnPassantMove(board, move);
  }
  if (move.isCastling()) {
    return !move.isPromotion() && !move.isDoubleStep() && isCastlingMove(board, move);
  }
  if (board.at(to) != move.captured() || !board.at(to).mayBeEnteredBy(us)) return false;
  const Square king = board.kingSquare(us);
  if (from != king && uncovers(board, king, from, to)) return false;
  if (piece.isPawn()) return isPawnMove(board, move);
  if (move.isPromotion() || move.isDoubleStep()) return false;
  if (!reaches(board, piece.kind(), from, to)) return false;
  return from != king || !isAttacked(board, ~us, to);
}

}  // namespace

bool isMove(const Board& board, Move move, Move lastMove) {
  if (move.isNull() || (move.word() & 0xc0000000) != 0) return false;
  if (lastMove.isCheck()) return pseudoLegalMoves(board, lastMove).contains(move);
  return isMoveWithoutCheck(board, move);
}

bool isMove(const Board& board, Move move) {
  return isMove(board, move, board.lastMove());
}

}  // namespace ombrin
