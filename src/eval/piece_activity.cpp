#include "eval/piece_activity.h"

#include <array>
#include <bit>

#include "board/attack_sets.h"
#include "eval/phase_score.h"
#include "eval/square_table.h"

namespace ombrin {

namespace {

// clang-format off
constexpr SquareTable KNIGHT_SQUARE = {  // times the opponent's pawns, in 1/8
    -40, -32, -24, -24, -24, -24, -32, -40,
    -32, -24, -16,  -8,  -8, -16, -24, -32,
    -24,  -8,   0,   4,   4,   0,  -8, -24,
    -20,   0,   8,  16,  16,   8,   0, -20,
    -20,   4,  16,  20,  20,  16,   4, -20,
    -24,   4,  20,  24,  24,  20,   4, -24,
    -32,  -8,   0,   4,   4,   0,  -8, -32,
    -72, -32, -24, -24, -24, -24, -32, -72};

constexpr SquareTable KNIGHT_PAWN_AHEAD = {  // with an own pawn in front
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  3,  4,  6,  6,  4,  3,  0,
     8,  6,  8, 12, 12,  8,  6,  8,
    14, 10, 12, 16, 16, 12, 10, 14,
     0,  4,  8,  8,  8,  8,  4,  0};

constexpr SquareTable KNIGHT_CHASED = {  // with an enemy pawn three squares ahead
    -32, -24, -24, -12, -12, -24, -24, -32,
     -8,  -8,  -4,  -4,  -4,  -4,  -8,  -8,
     -8,  -8,  -8,  -8,  -8,  -8,  -8,  -8,
     -8,  -8,  -8,  -8,  -8,  -8,  -8,  -8};

constexpr SquareTable BISHOP_SQUARE = {
    -24, -20, -16, -12, -12, -16, -20, -24,
     -8,   0,  -2,   0,   0,  -2,   0,  -8,
     -6,  -2,   4,   2,   2,   4,  -2,  -6,
     -4,   0,   2,   8,   8,   2,   0,  -4,
     -4,   0,   2,   8,   8,   2,   0,  -4,
     -6,  -2,   4,   2,   2,   4,  -2,  -6,
     -8,   0,  -2,   0,   0,  -2,   0,  -8,
    -12,  -8,  -6,  -4,  -4,  -6,  -8, -12};

constexpr PhaseSquareTable QUEEN_SQUARE = join({
    -12,  -8,  -4,  -2,  -2,  -4,  -8, -12,
     -8,  -4,   0,   2,   2,   0,  -4,  -8,
     -6,  -2,   2,   4,   4,   2,  -2,  -6,
     -4,  -2,   0,   2,   2,   0,  -2,  -4,
     -4,  -2,   0,   0,   0,   0,  -2,  -4,
     -4,  -2,   0,   0,   0,   0,  -2,  -4,
     -4,  -2,   0,   0,   0,   0,  -2,  -4,
     -4,  -2,   0,   0,   0,   0,  -2,  -4}, {
    -10,  -9,  -8,  -6,  -6,  -8,  -9, -10,
     -8,  -7,  -6,  -4,  -4,  -6,  -7,  -8,
     -6,  -4,   0,   2,   2,   0,  -4,  -6,
     -3,   0,   3,   6,   6,   3,   0,  -3,
      0,   0,   4,   8,   8,   4,   0,   0,
     -2,   0,   2,   4,   4,   2,   0,  -2,
     -6,  -4,  -2,   0,   0,  -2,  -4,  -6,
     -8,  -6,  -4,  -2,  -2,  -4,  -6,  -8});
// clang-format on
static_assert(isFileSymmetric(KNIGHT_SQUARE) && isFileSymmetric(KNIGHT_PAWN_AHEAD) &&
              isFileSymmetric(KNIGHT_CHASED) && isFileSymmetric(BISHOP_SQUARE) &&
              isFileSymmetric(QUEEN_SQUARE));

// Turns values into what they count in the two phases.
template <std::size_t SIZE, typename Weigh>
consteval std::array<PhaseScore, SIZE> phased(const std::array<int, SIZE>& values, Weigh weigh) {
  std::array<PhaseScore, SIZE> table;
  for (std::size_t n = 0; n < SIZE; ++n) table[n] = weigh(values[n]);
  return table;
}

// By the number of empty squares a piece can go to.
constexpr auto KNIGHT_MOBILITY = phased(std::array{-24, -8, 0, 4, 8, 11, 14, 17, 21},
                                        [](int value) { return PhaseScore(value / 2, value / 4); });
constexpr std::array<int, 16> BISHOP_MOBILITY = {-24, -16, -12, -8, -4, 0,  4,  8,
                                                 12,  14,  16,  18, 20, 22, 24, 26};
constexpr std::array<PhaseScore, 16> ROOK_MOBILITY = {{{-12, -36},
                                                       {-10, -30},
                                                       {-6, -24},
                                                       {-3, -18},
                                                       {0, -12},
                                                       {3, -6},
                                                       {6, 0},
                                                       {9, 6},
                                                       {12, 12},
                                                       {14, 16},
                                                       {15, 19},
                                                       {16, 22},
                                                       {16, 25},
                                                       {16, 25},
                                                       {16, 25},
                                                       {16, 25}}};

// By the number of enemy men it attacks, protected pawns not counted.
constexpr auto KNIGHT_ATTACKS = phased(std::array{0, 6, 12, 18, 24, 24, 24, 24, 0},
                                       [](int value) { return PhaseScore(value / 2, 2 * value); });
constexpr auto BISHOP_ATTACKS = phased(std::array{0, 6, 12, 12, 12},
                                       [](int value) { return PhaseScore(value / 2, 3 * value); });
constexpr auto ROOK_ATTACKS =
    phased(std::array{0, 6, 12, 18, 8}, [](int value) { return PhaseScore(value, 2 * value); });

// By the number of such files on the board.
constexpr std::array<int, 9> OPEN_FILE = {0, 16, 16, 16, 12, 8, -2, -2, 0};
constexpr std::array<int, 9> HALF_OPEN_FILE = {0, 8, 8, 8, 8, 8, 8, 8, 8};

constexpr int TRAPPED_PIECE = -100;
constexpr int ROOK_SHUT_IN = -50;

// Units of pieces a side starts with: while the opponent has them, the middlegame score counts.
constexpr int FULL_UNITS = 32;

template <Color OWN>
class PieceActivity {
 public:
  PieceActivity(const Board& board, const BoardSets& sets, const PawnEntry& entry)
      : board_(board),
        pawns_(entry.sides[OWN]),
        enemyPawns_(entry.sides[ENEMY]),
        enemy_(board.material(ENEMY)),
        enemyKing_(board.kingSquare(ENEMY)),
        empty_(~sets.occupied()),
        targets_(sets.men(ENEMY) & ~protectedPawns(entry.pawns[ENEMY])) {}

  int value() const {
    Worth worth;
    board_.forEach(OWN, KNIGHT, [&](Piece, Square square) { worth += knight(square); });
    board_.forEach(OWN, BISHOP, [&](Piece, Square square) { worth += bishop(square); });
    board_.forEach(OWN, ROOK, [&](Piece, Square square) { worth += rook(square); });
    board_.forEach(OWN, QUEEN, [&](Piece, Square square) { worth += queen(square); });
    worth.placement += rookShutIn();
    const int units = enemy_.units();
    return ((FULL_UNITS - units) * worth.phased.endgame() + units * worth.phased.middlegame()) /
               FULL_UNITS +
           worth.placement;
  }

 private:
  static constexpr Color ENEMY = ~OWN;
  static constexpr Delta FORWARD = forward(OWN);
  static constexpr int SEVENTH = 6;
  static constexpr int EIGHTH = 7;

  struct Worth {
    PhaseScore phased;
    int placement = 0;  // counts in every phase

    Worth& operator+=(Worth other) {
      phased += other.phased;
      placement += other.placement;
      return *this;
    }
  };

  // What a piece can reach: empty squares, and enemy men worth attacking.
  struct Reach {
    int empty = 0;
    int attacked = 0;
  };

  static SquareSet protectedPawns(SquareSet pawns) { return pawns & pawns.pawnAttacks(ENEMY); }
  bool isPawn(Square square) const { return board_.at(square).isPawn(); }

  Reach count(SquareSet reached) const {
    return {(reached & empty_).count(), (reached & targets_).count()};
  }

  Worth knight(Square square) const {
    const int index = tableIndex(square, OWN);
    const Reach reach = count(knightReach(square));
    int placement = enemy_.pawns() * KNIGHT_SQUARE[index] / 8;
    if (board_.at(square + FORWARD).isPawnOf(OWN)) placement += KNIGHT_PAWN_AHEAD[index];
    if (board_.at(square + 3 * FORWARD).isPawnOf(ENEMY)) placement += KNIGHT_CHASED[index];
    if (isInEnemyCorner(index) && isKnightTrapped(square)) placement += TRAPPED_PIECE;
    return {KNIGHT_MOBILITY[reach.empty] + KNIGHT_ATTACKS[reach.attacked], placement};
  }

  Worth bishop(Square square) const {
    const int index = tableIndex(square, OWN);
    const Reach reach = count(bishopReach(square, ~empty_));
    int placement = BISHOP_SQUARE[index] + BISHOP_MOBILITY[reach.empty];
    if (isInEnemyCorner(index) && isBishopTrapped(square)) placement += TRAPPED_PIECE;
    return {BISHOP_ATTACKS[reach.attacked], placement};
  }

  Worth rook(Square square) const {
    const Reach reach = count(rookReach(square, ~empty_));
    Worth worth{ROOK_MOBILITY[reach.empty] + ROOK_ATTACKS[reach.attacked], fileOf(square)};
    if (square.relativeRank(OWN) >= SEVENTH) {
      const int kingRank = enemyKing_.relativeRank(OWN);
      if (kingRank == SEVENTH) worth += {{}, 10};
      if (kingRank == EIGHTH) worth += {{10, 40}, 0};
    }
    return worth;
  }

  Worth queen(Square square) const {
    Worth worth{QUEEN_SQUARE[tableIndex(square, OWN)], 8 - 2 * kingDistance(enemyKing_, square)};
    if (square.relativeRank(OWN) == SEVENTH) {
      const int kingRank = enemyKing_.relativeRank(OWN);
      if (kingRank == SEVENTH) worth += {{}, 10};
      if (kingRank == EIGHTH) worth += {{10, 32}, 0};
    }
    return worth;
  }

  int fileOf(Square rook) const {
    if (pawns_.hasPawnOn(rook.file())) return 0;
    const auto own = pawns_.filesWithoutPawns;
    if (enemyPawns_.hasPawnOn(rook.file())) return HALF_OPEN_FILE[std::popcount(own)];
    const auto both = static_cast<std::uint8_t>(own & enemyPawns_.filesWithoutPawns);
    return OPEN_FILE[std::popcount(both)];
  }

  // The last two squares of a rook file.
  static bool isInEnemyCorner(int index) {
    return index >= 8 * SEVENTH && (index % 8 == 0 || index % 8 == 7);
  }
  static Delta inward(Square square) { return square.file() == 0 ? RIGHT : -RIGHT; }

  // A knight in the enemy's corner whose ways out pawns take (a7: a6 and b7, or c6; a8: c7).
  bool isKnightTrapped(Square square) const {
    if (isPawn(square - FORWARD + 2 * inward(square))) return true;
    return square.relativeRank(OWN) == SEVENTH && isPawn(square - FORWARD) &&
           isPawn(square + inward(square));
  }
  // A bishop there whose diagonal a pawn closes (a7: b6; a8: c6).
  bool isBishopTrapped(Square square) const {
    const int steps = square.relativeRank(OWN) == SEVENTH ? 1 : 2;
    return isPawn(square + steps * (inward(square) - FORWARD));
  }

  // A rook between its corner and a king that has left the middle but not castled.
  int rookShutIn() const {
    const Square king = board_.kingSquare(OWN);
    if (king.rank() != 0 && king.rank() != 7) return 0;
    const int file = king.file();
    const bool right = file == 5 || file == 6;
    if (!right && file != 1 && file != 2) return 0;
    if (!pawns_.hasPawnOn(right ? 6 : 0) || !pawns_.hasPawnOn(right ? 7 : 1)) return 0;
    const Delta outward = right ? RIGHT : -RIGHT;
    for (const Delta step : {outward, 2 * outward, outward + FORWARD, 2 * outward + FORWARD}) {
      const Piece piece = board_.at(king + step);
      if (piece.isOf(OWN) && piece.type() == ROOK) return ROOK_SHUT_IN;
    }
    return 0;
  }

  const Board& board_;
  const PawnSideInfo& pawns_;
  const PawnSideInfo& enemyPawns_;
  const Material enemy_;
  const Square enemyKing_;
  const SquareSet empty_;
  const SquareSet targets_;  // enemy men worth attacking
};

}  // namespace

int pieceActivity(const Board& board, const BoardSets& sets, const PawnEntry& entry, Color color) {
  return color == WHITE ? PieceActivity<WHITE>(board, sets, entry).value()
                        : PieceActivity<BLACK>(board, sets, entry).value();
}

}  // namespace ombrin
