// Who attacks what, and which moves open lines.
#pragma once

#include "board/board.h"
#include "board/geometry.h"

namespace ombrin {

// Does a piece of colour `by` attack the square?
bool isAttacked(const Board& board, Color by, Square target);

// The first non-empty element met from `origin` (excluded) in steps of `step`; its content may be
// OFF_BOARD.
inline Square firstOnLine(const Board& board, Square origin, Delta step) {
  do {
    origin += step;
  } while (board.at(origin).isEmpty());
  return origin;
}

// Is the first piece met from `origin` (excluded) in steps of `step` a slider of colour `by` that
// moves along that line?
inline bool isSliderAhead(const Board& board, Color by, Square origin, Delta step) {
  const Piece piece = board.at(firstOnLine(board, origin, step));
  return piece.isOf(by) && slidesOver(piece.kind(), step);
}

// Two squares on one line: are all squares between them empty?
inline bool isLineOpen(const Board& board, Square from, Square to) {
  return firstOnLine(board, from, stepAlong(to - from)) == to;
}

// Does a piece of that kind, standing on `from`, attack the occupied square `to`?
inline bool attacks(const Board& board, int kind, Square from, Square to) {
  const int way = kind & attacksOver(to - from);
  if (way == 0) return false;
  return (way & LINE_ATTACK) == 0 || isLineOpen(board, from, to);
}

// The same of any square `to`, when the piece does stand on `from`.
inline bool reaches(const Board& board, int kind, Square from, Square to) {
  const int way = kind & attacksOver(to - from);
  if (way == 0) return false;
  return (way & LINE_ATTACK) == 0 || isLineOpen(board, to, from);
}

// Would taking the piece off `from` and putting it on `to` open a line from a slider of colour `by`
// to the king on `king`?
bool opensLine(const Board& board, Color by, Square king, Square from, Square to);

// Would moving from `from` to `to` expose the mover's own king, which stands on `king`? Tells
// whether a pseudo-legal move of the side to move (not of its king) is legal.
inline bool uncovers(const Board& board, Square king, Square from, Square to) {
  return isLine(from - king) && opensLine(board, ~board.side, king, from, to);
}

// Would the move open a line of the side to move to the enemy king on `enemyKing`?
inline bool discoversCheck(const Board& board, Square enemyKing, Square from, Square to) {
  return isLine(from - enemyKing) && opensLine(board, board.side, enemyKing, from, to);
}

// Does the pseudo-legal `move` of the side to move give check, directly or by opening a line? A
// line with exactly one more piece between slider and king (for the direct check, not a pawn)
// counts too, and then `move` gets the x-ray flag.
bool givesCheck(const Board& board, Move& move, Square enemyKing);

}  // namespace ombrin
