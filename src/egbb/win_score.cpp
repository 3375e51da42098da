#include "egbb/win_score.h"

#include <array>

namespace ombrin {

namespace {

// Laid out as White sees the board: the first row is rank 8, files a to h.
using BoardTable = std::array<std::int8_t, 64>;

constexpr int valueOn(const BoardTable& table, Square square) {
  return table[square.flipped().index64()];
}

// How central a king stands.
constexpr BoardTable CENTRE = {
    -9, -8, -7, -6, -6, -7, -8, -9,  //
    -8, -5, -4, -3, -3, -4, -5, -8,  //
    -7, -4, -1, 0,  0,  -1, -4, -7,  //
    -6, -3, 0,  3,  3,  0,  -3, -6,  //
    -6, -3, 0,  3,  3,  0,  -3, -6,  //
    -7, -4, -1, 0,  0,  -1, -4, -7,  //
    -8, -5, -4, -3, -3, -4, -5, -8,  //
    -9, -8, -7, -6, -6, -7, -8, -9,  //
};

// How far a king is from the two corners in which a dark-squared bishop and a knight mate.
constexpr BoardTable CORNER = {
    7, 6, 5, 4, 3, 2, 1, 0,  //
    6, 7, 6, 5, 4, 3, 2, 1,  //
    5, 6, 7, 6, 5, 4, 3, 2,  //
    4, 5, 6, 7, 6, 5, 4, 3,  //
    3, 4, 5, 6, 7, 6, 5, 4,  //
    2, 3, 4, 5, 6, 7, 6, 5,  //
    1, 2, 3, 4, 5, 6, 7, 6,  //
    0, 1, 2, 3, 4, 5, 6, 7,  //
};

// The step from the losing king to where the winning king does best: between it and the centre.
constexpr BoardTable APPROACH = {
    -15, -32, -32, -32, -32, -32, -32, -17,  //
    +2,  -15, -32, -32, -32, -32, -17, -2,   //
    +2,  +2,  -15, -32, -32, -17, -2,  -2,   //
    +2,  +2,  +2,  -15, -17, -2,  -2,  -2,   //
    +2,  +2,  +2,  +17, +15, +2,  -2,  -2,   //
    +2,  +2,  +17, +32, +32, +15, -2,  -2,   //
    +2,  +17, +32, +32, +32, +32, +15, -2,   //
    +17, +32, +32, +32, +32, +32, +32, +15,  //
};

constexpr Square mirrored(Square square) {
  return Square::at(7 - square.file(), square.rank());
}

bool isBishopAndKnight(Material material) {
  Material both = Material::of(BISHOP);
  both += Material::of(KNIGHT);
  return material == both;
}

// Far enough beyond the bound that nothing which makes a win look hard leads back to it.
constexpr int BASE = WIN_BOUND.value() + 2000;

// How well the losing king keeps away from where it is mated.
int escape(const Board& board, Color winner, Square losingKing) {
  if (!isBishopAndKnight(board.material(winner))) return 2 * valueOn(CENTRE, losingKing);
  Square seen = losingKing;
  board.forEach(winner, BISHOP, [&](Piece, Square bishop) {
    if (bishop.shade() != A1.shade()) seen = mirrored(losingKing);
  });
  return 8 * valueOn(CORNER, seen);
}

}  // namespace

Score winScore(const Board& board, Color winner) {
  const Color loser = ~winner;
  const Material own = board.material(winner);
  const Material other = board.material(loser);
  if (own.pawns() != 0 || other.pawns() != 0) return 0;
  int score = BASE + 100 * (own.units() - other.units()) - 100 * other.pieces();

  const Square winningKing = board.kingSquare(winner);
  const Square losingKing = board.kingSquare(loser);
  score += valueOn(CENTRE, winningKing) -
           kingDistance(winningKing, losingKing + valueOn(APPROACH, losingKing));
  // Knights help near the losing king, and its rooks far from it are easily lost to a fork.
  board.forEach(winner, KNIGHT,
                [&](Piece, Square knight) { score -= kingDistance(losingKing, knight) / 2; });
  board.forEach(loser, ROOK,
                [&](Piece, Square rook) { score += kingDistance(losingKing, rook) / 2; });
  return score - escape(board, winner, losingKing);
}

}  // namespace ombrin
