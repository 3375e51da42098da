#include "board/attacks.h"

namespace ombrin {

namespace {

// Do the pieces of one run attack the square along an open line?
bool isAttackedByRun(const Board& board, Color by, PieceType type, Square target) {
  const int kind = piece_tables::KINDS[Piece(by, slotRun(type).first).index()];
  const std::uint8_t* entry = &board.pieceSquare[Piece(by, slotRun(type).first).index()];
  for (; *entry != Board::FREE; ++entry) {
    const Square from(*entry);
    if (!from.isOnBoard() || !slidesOver(kind, target - from)) continue;
    if (firstOnLine(board, target, stepAlong(from - target)) == from) return true;
  }
  return false;
}

// As firstOnLine, but `vacated` counts as empty.
Square firstOnLineThrough(const Board& board, Square origin, Delta step, Square vacated) {
  Square square = firstOnLine(board, origin, step);
  if (square == vacated) square = firstOnLine(board, square, step);
  return square;
}

// Does the line from the piece that arrives on `to` reach the king, at the most through one piece
// that is no pawn?
bool slidesToKing(const Board& board, Move& move, Square king) {
  const Delta step = stepAlong(king - move.to());
  Square square = firstOnLineThrough(board, move.to(), step, move.from());
  if (square == king) return true;
  const Piece blocker = board.at(square);
  if (blocker == OFF_BOARD || blocker.isPawn()) return false;
  if (firstOnLineThrough(board, square, step, move.from()) != king) return false;
  move = move.with(Move::XRAY);
  return true;
}

// Does leaving `from` open a line of the mover's to the king, at the most through one more piece
// that is no pawn?
bool opensLineToKing(const Board& board, Move& move, Square king) {
  if (!isLine(move.from() - king)) return false;
  const Delta step = stepAlong(move.from() - king);
  if (stepAlong(move.to() - king) == step) return false;
  if (firstOnLine(board, king, step) != move.from()) return false;
  const Square behind = firstOnLine(board, move.from(), step);
  const Piece piece = board.at(behind);
  if (piece.isOf(board.side) && slidesOver(piece.kind(), step)) return true;
  if (piece == OFF_BOARD || piece.isPawn()) return false;
  if (!isSliderAhead(board, board.side, behind, step)) return false;
  move = move.with(Move::XRAY);
  return true;
}

}  // namespace

bool isAttacked(const Board& board, Color by, Square target) {
  if ((attacksOver(target - board.kingSquare(by)) & KING_ATTACK) != 0) return true;
  const Square behind = target - forward(by);
  if (board.at(behind - RIGHT).isPawnOf(by) || board.at(behind + RIGHT).isPawnOf(by)) return true;
  const std::uint8_t* entry = &board.pieceSquare[Piece(by, slotRun(KNIGHT).first).index()];
  for (; *entry != Board::FREE; ++entry) {
    const Square from(*entry);
    if (from.isOnBoard() && (attacksOver(target - from) & KNIGHT_ATTACK) != 0) return true;
  }
  return isAttackedByRun(board, by, BISHOP, target) || isAttackedByRun(board, by, ROOK, target) ||
         isAttackedByRun(board, by, QUEEN, target);
}

bool opensLine(const Board& board, Color by, Square king, Square from, Square to) {
  const Delta step = stepAlong(from - king);
  if (stepAlong(to - king) == step) return false;
  return firstOnLine(board, king, step) == from && isSliderAhead(board, by, from, step);
}

bool givesCheck(const Board& board, Move& move, Square enemyKing) {
  const Piece mover = move.isPromotion() ? Piece(board.side, slotRun(move.promotion()).first)
                                         : board.at(move.from());
  const int way = mover.kind() & attacksOver(enemyKing - move.to());
  if (way != 0) {
    if ((way & LINE_ATTACK) == 0) return true;
    if (slidesToKing(board, move, enemyKing)) return true;
  }
  return opensLineToKing(board, move, enemyKing);
}

}  // namespace ombrin
