#include "eval/king_safety.h"

#include <algorithm>
#include <array>

#include "eval/king_attack_tables.h"
#include "eval/square_table.h"

namespace ombrin {

namespace {

// By the number of files between the king and the nearest file with a pawn.
constexpr std::array<int, 8> SPAN_OWN = {0, 4, 16, 20, 24, 28, 32, 36};
constexpr std::array<int, 8> SPAN_ENEMY = {0, 2, 8, 10, 12, 14, 16, 18};

// The endgame term grows with the opponent's pawns (0 to 8) and shrinks with its units of pieces
// (0 to 13); the product counts in 1/256.
constexpr std::array<int, 9> PAWN_FACTOR = {8, 12, 16, 20, 24, 24, 24, 24, 24};
constexpr std::array<int, 14> MATERIAL_FACTOR = {24, 16, 16, 24, 16, 16, 24,
                                                 16, 16, 16, 12, 12, 12, 8};

// clang-format off
// How exposed a king is by where it stands, in units of danger.
constexpr SquareTable KING_ZONE_BASE = {
    1, 0, 4, 4, 4, 4, 0, 1,
    1, 1, 4, 6, 6, 4, 1, 1,
    4, 5, 6, 7, 7, 6, 5, 4,
    8, 9, 9, 9, 9, 9, 9, 8,
    9, 9, 9, 9, 9, 9, 9, 9,
    9, 9, 9, 9, 9, 9, 9, 9,
    9, 9, 9, 9, 9, 9, 9, 9,
    9, 9, 9, 9, 9, 9, 9, 9};

constexpr SquareTable KING_ENDGAME = {
    -32, -24, -24, -24, -24, -24, -24, -32,
    -20, -12, -12,  -8,  -8, -12, -12, -20,
    -20,  -8,   2,   6,   6,   2,  -8, -20,
     -8,   0,  16,  22,  22,  16,   0,  -8,
     -8,   0,  24,  32,  32,  24,   0,  -8,
     -8,   0,  16,  22,  22,  16,   0,  -8,
    -20,  -8,   2,   6,   6,   2,  -8, -20,
    -20, -12, -12,  -8,  -8, -12, -12, -20};
// clang-format on
static_assert(isFileSymmetric(KING_ZONE_BASE) && isFileSymmetric(KING_ENDGAME));

// Units of enemy pieces: from ATTACKERS on they can attack the king, above CASTLING_UNITS castling
// matters, and up to ENDGAME_UNITS the king should take part in the game.
constexpr int ATTACKERS = 11;
constexpr int CASTLING_UNITS = 12;
constexpr int ENDGAME_UNITS = 13;

constexpr int kingZone(int file) {
  return file <= 2 ? 0 : file <= 4 ? 1 : 2;
}

int spanPenalty(const std::array<int, 8>& table, const PawnSideInfo& pawns, int kingFile) {
  if (!pawns.hasPawns()) return 0;
  if (kingFile > pawns.lastFile()) return table[kingFile - pawns.lastFile()];
  if (kingFile < pawns.firstFile()) return table[pawns.firstFile() - kingFile];
  return 0;
}

int pawnsBeside(const Board& board, Color color, Square square) {
  return static_cast<int>(board.at(square - RIGHT).isPawnOf(color)) +
         static_cast<int>(board.at(square + RIGHT).isPawnOf(color));
}

// How much the pieces of ATTACKER bear on the enemy king, looking through what could move out of
// the way at a cost.
template <Color ATTACKER>
class KingAttack {
 public:
  explicit KingAttack(const Board& board) : board_(board), king_(board.kingSquare(~ATTACKER)) {}

  int total() const {
    int sum = 0;
    board_.forEach(ATTACKER, KNIGHT,
                   [&](Piece, Square square) { sum += 3 * KNIGHT_BEARING.at(king_ - square); });
    sum += 3 * sliders<BISHOP>();
    sum += 4 * sliders<ROOK>();
    sum += 8 * sliders<QUEEN>();
    return sum;
  }

 private:
  static constexpr Delta FORWARD = forward(ATTACKER);
  static constexpr int CLOSED = 1000;  // the cost of what never gets out of the way

  template <PieceType TYPE>
  int sliders() const {
    int sum = 0;
    board_.forEach(ATTACKER, TYPE, [&](Piece, Square square) {
      const Approach approach = approachOf<TYPE>(king_ - square);
      sum += approach.steps == 0 ? approach.worth : lookThrough<TYPE>(square, approach);
    });
    return sum;
  }

  // Walks from a slider to where it would bear on the king's surroundings and returns what is left
  // of that after paying for the obstacles.
  template <PieceType TYPE>
  int lookThrough(Square square, Approach approach) const {
    int cost = 0;
    Piece piece;
    for (int n = approach.steps; n > 0; --n) {
      square += approach.step;
      piece = board_.at(square);
      if (piece.isEmpty()) continue;
      const int obstacle = costOf<TYPE>(square, piece);
      if (obstacle == CLOSED) return 0;
      cost += obstacle;
    }
    return std::max(approach.worth + endBonus<TYPE>(piece) - cost, 0);
  }

  // What the piece on the last square of the walk (or none) changes.
  template <PieceType TYPE>
  static int endBonus(Piece piece) {
    if constexpr (TYPE == BISHOP) return piece.type() == BISHOP ? 0 : 4;
    if constexpr (TYPE == ROOK) return piece.type() == ROOK ? -4 : 0;
    return piece.isEmpty() ? 2 : 0;
  }

  template <PieceType TYPE>
  int costOf(Square square, Piece piece) const {
    if constexpr (TYPE == BISHOP) return costForBishop(square, piece);
    if (piece.isOf(ATTACKER)) return costOfOwnForMajor(square, piece);
    return TYPE == ROOK ? costForRook(square, piece) : 3 + 4 * guards(square);
  }

  // The king's pawns that protect a square.
  int guards(Square square) const { return pawnsBeside(board_, ~ATTACKER, square + FORWARD); }

  int costForBishop(Square square, Piece piece) const {
    if (piece.isOf(ATTACKER)) {
      if (!piece.isPawn()) return 2;
      return board_.at(square + FORWARD).isEmpty() ? 4 : CLOSED;
    }
    if (piece.isPawn()) return 2 + 2 * guards(square);
    return piece.type() == BISHOP ? 4 : 2;
  }

  // A man of the king's side on a rook's way.
  int costForRook(Square square, Piece piece) const {
    const int trade = piece.type() == ROOK ? 2 : 0;
    if (pawnsBeside(board_, ATTACKER, square - FORWARD) > 0) return trade;
    return (piece.isPawn() ? 4 : 2) + 2 * guards(square) + trade;
  }

  // An attacker's man on a rook's or queen's way.
  int costOfOwnForMajor(Square square, Piece piece) const {
    if (piece.type() == ROOK || piece.type() == QUEEN) return -4;
    if (!piece.isPawn() || guards(square) > 0) return 2;  // the pawn can capture out of the way
    const Piece front = board_.at(square + FORWARD);
    if (front.isPawnOf(~ATTACKER) || guards(square + FORWARD) == 0) return CLOSED;
    return front.isEmpty() ? 2 : 6;
  }

  const Board& board_;
  Square king_;
};

// The king of DEFENDER.
template <Color DEFENDER>
class KingSafety {
 public:
  KingSafety(const Board& board, const PawnEntry& entry)
      : board_(board),
        pawns_(entry.sides[DEFENDER]),
        enemyPawns_(entry.sides[~DEFENDER]),
        enemy_(board.material(~DEFENDER)),
        king_(board.kingSquare(DEFENDER)),
        shelter_(pawns_.shelter[kingZone(king_.file())]),
        storm_(pawns_.storm[kingZone(king_.file())]) {}

  int value() const {
    int value = -spanPenalty(SPAN_OWN, pawns_, king_.file());
    if (enemy_.units() >= ATTACKERS) value += attack();
    if (enemy_.units() > CASTLING_UNITS) value += castling();
    return enemy_.units() > ENDGAME_UNITS ? value : endgame(value);
  }

 private:
  int attack() const {
    const int force = std::clamp(8 * enemy_.queens() + enemy_.units() - 16, 0, 8);
    if (force == 0) return 0;
    const int base =
        KingAttack<~DEFENDER>(board_).total() / 4 + KING_ZONE_BASE[tableIndex(king_, DEFENDER)];
    const int danger =
        (storm_ + 16 - shelter_) * base / 16 + base + (board_.side == DEFENDER ? 4 : 0);
    return penaltyOf(danger) * force / 8 * 12 / 32;
  }

  // Grows faster with every threshold that the danger exceeds.
  static int penaltyOf(int danger) {
    int penalty = 0;
    for (const int threshold : {8, 16, 24, 32, 48, 64, 80, 96}) {
      if (danger <= threshold) break;
      penalty -= danger - threshold;
    }
    return penalty;
  }

  // The pawns around the king, or around where castling would take it.
  int castling() const {
    const Piece front = board_.at(king_ + forward(DEFENDER));
    const bool bishopInFront = front.isOf(DEFENDER) && front.type() == BISHOP;
    const int now = shelter_ + (bishopInFront ? 2 : 0) - storm_;
    const int average = (std::max(now, kingSide(now)) + std::max(now, queenSide(now))) / 2;
    return -8 * enemy_.units() * (16 - average) / 32;
  }
  int kingSide(int now) const {
    if ((board_.rights & kingSideRight(DEFENDER)) == 0) return now;
    return pawns_.shelter[2] - pawns_.storm[2] - 3 - (isFree(RIGHT) ? 0 : 1) +
           (isFree(2 * RIGHT) ? 1 : 0);
  }
  int queenSide(int now) const {
    if ((board_.rights & queenSideRight(DEFENDER)) == 0) return now;
    return pawns_.shelter[0] - pawns_.storm[0] - 4 - (isFree(-RIGHT) ? 0 : 1) +
           (isFree(-2 * RIGHT) ? 1 : 0) + (isFree(-3 * RIGHT) ? 1 : 0);
  }
  bool isFree(Delta fromKing) const { return board_.at(king_ + fromKing).isEmpty(); }

  int endgame(int value) const {
    value -= spanPenalty(SPAN_ENEMY, enemyPawns_, king_.file());
    value += KING_ENDGAME[tableIndex(king_, DEFENDER)];
    return PAWN_FACTOR[enemy_.pawns()] * MATERIAL_FACTOR[enemy_.units()] * value / 256;
  }

  const Board& board_;
  const PawnSideInfo& pawns_;
  const PawnSideInfo& enemyPawns_;
  const Material enemy_;
  const Square king_;
  const int shelter_;
  const int storm_;
};

}  // namespace

int kingSafety(const Board& board, const PawnEntry& entry, Color color) {
  return color == WHITE ? KingSafety<WHITE>(board, entry).value()
                        : KingSafety<BLACK>(board, entry).value();
}

}  // namespace ombrin
