#include "eval/passed_pawns.h"

#include <cstdlib>

#include "board/attacks.h"
#include "board/exchange.h"
#include "eval/square_table.h"

namespace ombrin {

namespace {

constexpr RankTable PASSED_BLOCKED = {0, -4, -4, -4, -6, -12, -16, 0};
constexpr RankTable PASSED_FREE = {0, 4, 4, 4, 6, 12, 16, 0};
constexpr RankTable KING_NEAR_OWN = {0, 0, 0, 2, 8, 8, 12, 16};
constexpr RankTable KING_FAR_ENEMY = {0, 0, 0, 4, 16, 16, 24, 32};
constexpr RankTable ROOK_BEHIND = {0, 0, 0, 10, 15, 20, 25, 0};

constexpr int SEVENTH = 6;

// What it costs the opponent to stop a pawn that is about to promote: its cheapest kind of piece.
int promotionBonus(Material opponent) {
  if (opponent.hasMinor()) return 70;
  if (opponent.rooks() > 0) return 230;
  return opponent.hasQueen() ? 750 : 0;
}

// May a pawn on the seventh rank whose promotion square is covered count as if it were not, because
// the lone enemy piece that covers it will be won or driven off?
bool promotesWithKingsHelp(const Board& board, Color color, Square pawn, Square front) {
  const Square king = board.kingSquare(color);
  if (king.rank() == front.rank() || kingDistance(pawn, board.kingSquare(~color)) <= 2) {
    return false;
  }
  if (kingDistance(pawn, king) == 1) return true;
  return board.side == color && king.rank() == pawn.rank() &&
         std::abs(king.file() - pawn.file()) == 2;
}

// The bonus of a pawn on the seventh rank that nothing blocks; 0 when it is not about to promote.
int seventhRank(Board& board, Color color, Square pawn, Square front) {
  const Material opponent = board.material(~color);
  if (!losesMaterial(board, color, Move(pawn, front, EMPTY, Move::promotionTo(QUEEN))) ||
      (opponent.pieces() == 1 && promotesWithKingsHelp(board, color, pawn, front))) {
    return promotionBonus(opponent);
  }
  return 0;
}

int blockedBy(Piece blocker, Color color, int rank) {
  const bool byMinor =
      blocker.isOf(~color) && (blocker.type() == KNIGHT || blocker.type() == BISHOP);
  return byMinor ? 2 * PASSED_BLOCKED[rank] : PASSED_BLOCKED[rank];
}

int kings(const Board& board, Color color, Square front, int rank) {
  return (kingDistance(board.kingSquare(~color), front) - 2) * KING_FAR_ENEMY[rank] +
         (2 - kingDistance(board.kingSquare(color), front)) * KING_NEAR_OWN[rank];
}

int rookBehind(const Board& board, Color color, Square pawn, int rank) {
  const Piece piece = board.at(firstOnLine(board, pawn, -forward(color)));
  if (piece == OFF_BOARD || (piece.type() != ROOK && piece.type() != QUEEN)) return 0;
  return piece.isOf(color) ? ROOK_BEHIND[rank] : -ROOK_BEHIND[rank];
}

int passedPawn(Board& board, Color color, Square pawn) {
  const Square front = pawn + forward(color);
  const int rank = pawn.relativeRank(color);
  const Piece blocker = board.at(front);
  int value = 0;
  if (!blocker.isEmpty()) {
    value += blockedBy(blocker, color, rank);
  } else if (rank == SEVENTH) {
    // About to promote, nothing else matters.
    if (const int bonus = seventhRank(board, color, pawn, front); bonus != 0) return bonus;
  } else if (!losesMaterial(board, color, Move(pawn, front))) {
    value += PASSED_FREE[rank];
  }
  return value + kings(board, color, front, rank) + rookBehind(board, color, pawn, rank);
}

}  // namespace

int passedPawns(Board& board, const PawnEntry& entry, Color color) {
  const PawnSideInfo& pawns = entry.sides[color];
  int value = 0;
  for (int n = 0; n < pawns.passedCount; ++n) {
    value += passedPawn(board, color, pawns.passedPawn(n));
  }
  return value;
}

}  // namespace ombrin
