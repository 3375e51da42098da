#include "eval/scale_factor.h"

#include <array>
#include <cstdlib>

namespace ombrin {

namespace {

// By the pawns of each side, where both have a queen and as many pawns.
constexpr std::array<int, 9> QUEEN_ENDING = {512, 512, 768, 896, 1024, 1024, 1024, 1024, 1024};
// By the pawns of both sides together, where both have a rook.
constexpr std::array<int, 17> ROOK_ENDING = {100,  700,  512,  800,  800, 900, 900, 1024, 1024,
                                             1024, 1024, 1024, 1024, 900, 900, 800, 800};
// Bishops of opposite colours, with so much more for every pawn.
constexpr int OPPOSITE_BISHOPS = 412;
constexpr int OPPOSITE_BISHOPS_PER_PAWN = 16;
// Too little material to win, or a last pawn that a minor piece can be given up for.
constexpr int HARDLY_WINNABLE = 64;
constexpr int LAST_PAWN = 128;
constexpr int BISHOPS_OF_ONE_SHADE = 256;

constexpr int KNIGHT_UNITS = Material::of(KNIGHT).units();
constexpr int ROOK_UNITS = Material::of(ROOK).units();
constexpr int QUEEN_UNITS = Material::of(QUEEN).units();

// The n-th entry of the bishop list; of a captured bishop a square off the board.
Square bishopEntry(const Board& board, Color color, int n) {
  return board.squareOf(Piece(color, slotRun(BISHOP).first + n));
}
// The bishop of a side that has one, among the first two entries of its list.
Square loneBishop(const Board& board, Color color) {
  const Square first = bishopEntry(board, color, 0);
  return first.isOnBoard() ? first : bishopEntry(board, color, 1);
}

bool areFewPieces(Material a, Material b) {
  return a.pieces() <= 2 && b.pieces() <= 2 && a.hasQueen() == b.hasQueen();
}

// Only `owner` has pawns; `lead` is the score from the other side's point of view.
int scaleAgainstPawns(Material pawnless, Material owner, int lead) {
  if (lead > 0 && areFewPieces(pawnless, owner) && pawnless.units() - owner.units() <= 3) {
    return HARDLY_WINNABLE;
  }
  if (lead < 0 && owner.pawns() == 1 && pawnless.hasMinor() && pawnless.units() >= owner.units()) {
    return LAST_PAWN;
  }
  return FULL_SCALE;
}

// Two minor pieces against a bare king.
int scaleOfTwoMinors(const Board& board, Color color) {
  const int bishops = board.material(color).bishops();
  if (bishops == 0) return DRAWN;
  if (bishops == 1) return FULL_SCALE;
  return bishopEntry(board, color, 0).shade() == bishopEntry(board, color, 1).shade()
             ? BISHOPS_OF_ONE_SHADE
             : FULL_SCALE;
}

int scaleWithoutPawns(const Board& board, Material white, Material black) {
  if (areFewPieces(white, black) && std::abs(white.units() - black.units()) <= 3) {
    return HARDLY_WINNABLE;
  }
  if (black.isBareKing() && white.units() == 2 * KNIGHT_UNITS)
    return scaleOfTwoMinors(board, WHITE);
  if (white.isBareKing() && black.units() == 2 * KNIGHT_UNITS)
    return scaleOfTwoMinors(board, BLACK);
  return FULL_SCALE;
}

int scaleByPawns(const Board& board, int sum) {
  const Material white = board.WhiteMaterial;
  const Material black = board.BlackMaterial;
  if (white.pawns() > 0 && black.pawns() > 0) {
    const bool isQueenEnding = white.units() == QUEEN_UNITS && black.units() == QUEEN_UNITS &&
                               white.hasQueen() && black.hasQueen() &&
                               white.pawns() == black.pawns();
    return isQueenEnding ? QUEEN_ENDING[white.pawns()] : FULL_SCALE;
  }
  if (black.pawns() > 0) return scaleAgainstPawns(white, black, sum);
  if (white.pawns() > 0) return scaleAgainstPawns(black, white, -sum);
  return scaleWithoutPawns(board, white, black);
}

// Only rook pawns, with at most a bishop that does not cover their promotion square, against a king
// that is in front of them.
bool isRookPawnDraw(const Board& board, const PawnEntry& entry, Color stronger) {
  const Material material = board.material(stronger);
  const PawnSideInfo& pawns = entry.sides[stronger];
  const bool hasBishop = material.pieces() == 1 && material.bishops() == 1;
  if (material.pieces() > 0 && !hasBishop) return false;
  if (!pawns.hasPawns() || pawns.firstFile() != pawns.lastFile()) return false;
  const int file = pawns.firstFile();
  if ((file != 0 && file != 7) || pawns.passedCount == 0) return false;

  const Square king = board.kingSquare(~stronger);
  if (std::abs(king.file() - file) > 1) return false;
  if (king.relativeRank(stronger) < pawns.passedPawn(0).relativeRank(stronger)) return false;
  if (!hasBishop) return true;
  const Square bishop = loneBishop(board, stronger);
  const Square promotion = Square::at(file, stronger == WHITE ? 7 : 0);
  return bishop.isOnBoard() && bishop.shade() != promotion.shade();
}

}  // namespace

int scaleFactor(const Board& board, const PawnEntry& entry, int sum) {
  const Material white = board.WhiteMaterial;
  const Material black = board.BlackMaterial;
  const int scale = scaleByPawns(board, sum);
  if (scale == DRAWN) return DRAWN;
  if (sum != 0 && isRookPawnDraw(board, entry, sum > 0 ? WHITE : BLACK)) return DRAWN;

  // Endings of rooks and of opposite bishops are drawish in their own measure.
  const int pawns = white.pawns() + black.pawns();
  if (white.units() == ROOK_UNITS && black.units() == ROOK_UNITS &&
      std::abs(white.pawns() - black.pawns()) <= 1) {
    return ROOK_ENDING[pawns];
  }
  if (white.units() == KNIGHT_UNITS && black.units() == KNIGHT_UNITS && white.bishops() == 1 &&
      black.bishops() == 1 &&
      loneBishop(board, WHITE).shade() != loneBishop(board, BLACK).shade()) {
    return OPPOSITE_BISHOPS + OPPOSITE_BISHOPS_PER_PAWN * pawns;
  }
  return scale;
}

}  // namespace ombrin
