#include "search/selectivity.h"

#include <algorithm>
#include <cstdlib>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/geometry.h"

namespace ombrin {

namespace {

// From its new square, does a pawn attack a man of the enemy's?
bool pawnAttacks(const Board& board, Square to) {
  const Square ahead = to + forward(board.side);
  return board.at(ahead - RIGHT).isOf(~board.side) || board.at(ahead + RIGHT).isOf(~board.side);
}

// A knight a bishop, rook or queen?
bool knightAttacks(const Board& board, Square to) {
  return std::any_of(KNIGHT_STEPS.begin(), KNIGHT_STEPS.end(), [&](Delta step) {
    const Piece piece = board.at(to + step);
    return piece.isOf(~board.side) && piece.isSlider();
  });
}

// A slider a rook or queen, along another line than the one it moved along?
bool sliderAttacks(const Board& board, Piece mover, Square from, Square to) {
  const Delta moved = stepAlong(to - from);
  const auto attacksAlong = [&](Delta step) {
    if (step == moved || step == -moved) return false;
    const Piece piece = board.at(firstOnLine(board, to, step));
    return piece.isOf(~board.side) && piece.isSlider() && piece.type() != BISHOP;
  };
  const auto attacksAlongAny = [&](const std::array<Delta, 4>& steps) {
    return std::any_of(steps.begin(), steps.end(), attacksAlong);
  };
  return ((mover.kind() & DIAGONAL_ATTACK) != 0 && attacksAlongAny(DIAGONAL_STEPS)) ||
         ((mover.kind() & STRAIGHT_ATTACK) != 0 && attacksAlongAny(STRAIGHT_STEPS));
}

}  // namespace

bool isFutile(const Board& board, const NodeTerms& terms, Score alpha, Move& move) {
  if (terms.lastMove && move.to() == terms.lastMove.to()) return false;
  const int gain = 100 * move.captured().value() + (move.isPromotion() ? 800 : 0);
  if (terms.futility + gain >= alpha) return false;
  const Color side = board.side;
  if (board.at(move.from()).isPawn() && move.to().relativeRank(side) >= 6) return false;
  return !givesCheck(board, move, board.kingSquare(~side));
}

int extension(const Board& board, const NodeTerms& terms, NodeType type, Move move,
              int pawnEnding) {
  if (terms.newDepth >= terms.depth) return 0;
  const Material white = board.WhiteMaterial;
  const Material black = board.BlackMaterial;
  if (move.captured().value() > 1 && !white.hasPieces() && !black.hasPieces()) return pawnEnding;
  const bool recaptures =
      terms.newDepth >= 3 && !terms.lastMove.isQuiet() && move.to() == terms.lastMove.to();
  if (!recaptures) return 0;
  const bool balanced = std::abs(white.total() - black.total()) <= std::min(5, terms.newDepth);
  return type == PV_NODE || balanced ? 1 : 0;
}

bool isActive(const Board& board, const NodeTerms& terms, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const Piece mover = board.at(from);
  if (mover.isPawn() && (terms.passedFiles >> from.file() & 1) != 0) return true;
  const bool active = from == terms.threatSquare || (mover.isPawn() && pawnAttacks(board, to)) ||
                      (mover.type() == KNIGHT && knightAttacks(board, to)) ||
                      (mover.isSlider() && sliderAttacks(board, mover, from, to));
  return active &&
         (move.captured().value() > mover.value() || !losesMaterial(board, board.side, move));
}

}  // namespace ombrin
