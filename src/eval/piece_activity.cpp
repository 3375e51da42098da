#include "eval/piece_activity.h"

#include <array>

#include "board/attack_sets.h"
#include "eval/board_sets.h"
#include "eval/king_attack.h"
#include "eval/king_piece_table.h"
#include "eval/phase_score.h"
#include "eval/square_table.h"
#include "platform/instructions.h"

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

// What a knight's square is worth, by the number of the opponent's pawns.
constexpr std::array<SquareTable, 9> KNIGHT_PLACEMENT = [] {
  std::array<SquareTable, 9> table;
  for (int pawns = 0; pawns <= 8; ++pawns) {
    for (int index = 0; index < 64; ++index) {
      table[pawns][index] = static_cast<std::int16_t>(pawns * KNIGHT_SQUARE[index] / 8);
    }
  }
  return table;
}();

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

// A queen's distance from the enemy king.
constexpr auto QUEEN_NEAR_KING = makeKingPieceTable<std::int8_t>([](Square king, Square queen) {
  return static_cast<std::int8_t>(8 - 2 * kingDistance(king, queen));
});

// By colour and square of a king on the files b, c, f and g of a back rank: where a rook beside it
// is shut in.
constexpr std::array<std::array<SquareSet, 64>, 2> SHUT_IN = [] {
  std::array<std::array<SquareSet, 64>, 2> table;
  for (const Color color : {WHITE, BLACK}) {
    for (const int file : {1, 2, 5, 6}) {
      for (const int rank : {0, 7}) {
        const Square king = Square::at(file, rank);
        const Delta outward = file > 3 ? RIGHT : -RIGHT;
        for (const Delta step : {outward, 2 * outward}) {
          for (const Square square : {king + step, king + step + forward(color)}) {
            if (square.isOnBoard()) {
              table[color][king.index64()] |= SquareSet::of(square.index64());
            }
          }
        }
      }
    }
  }
  return table;
}();

constexpr int TRAPPED_PIECE = -100;
constexpr int ROOK_SHUT_IN = -50;

// Units of pieces a side starts with: while the opponent has them, the middlegame score counts.
constexpr int FULL_UNITS = 32;

// ATTACK tells whether the attack on the enemy king is asked for.
template <Color OWN, bool ATTACK>
class PieceWalk {
 public:
  PieceWalk(const Board& board, const BoardSets& sets, const PawnEntry& entry)
      : board_(board),
        sets_(sets),
        pawns_(entry.sides[OWN]),
        enemy_(board.material(ENEMY)),
        attack_(board, sets),
        empty_(~sets.occupied()),
        targets_(sets.men(ENEMY) & ~(sets.pawns(ENEMY) & sets.pawnAttacks(ENEMY))) {}

  [[gnu::always_inline]] PieceActivity result(unsigned force) const {
    const SquareSet own = sets_.men(OWN);
    const SquareSet ownRooks = own & sets_.rooks();
    const SquareSet ownQueens = own & sets_.queens();
    Worth worth;
    behindEnemyLines(ownRooks, ownQueens, worth);
    worth.placement += rookShutIn(ownRooks);
    knights(own & sets_.knights(), worth);
    bishops(own & sets_.bishops(), worth);
    rooks(ownRooks, worth);
    queens(ownQueens, worth);
    const int units = enemy_.units();
    const int phased =
        ((FULL_UNITS - units) * worth.phased.endgame() + units * worth.phased.middlegame()) /
        FULL_UNITS;
    return {phased + worth.placement, force, worth.attack};
  }

 private:
  static constexpr Color ENEMY = ~OWN;
  static constexpr Delta FORWARD = forward(OWN);
  static constexpr int SEVENTH = 6;
  static constexpr int EIGHTH = 7;
  static constexpr SquareSet ENEMY_CORNERS =
      (SquareSet::rank(SEVENTH, OWN) | SquareSet::rank(EIGHTH, OWN)) &
      (SquareSet::file(0) | SquareSet::file(7));

  struct Worth {
    PhaseScore phased;
    int placement = 0;    // counts in every phase
    unsigned attack = 0;  // on the enemy king
  };

  // Where a square is in a SquareTable of this colour.
  static constexpr unsigned relative(unsigned index) { return OWN == WHITE ? index : index ^ 56; }
  static Square squareOf(unsigned index) { return Square::fromIndex64(static_cast<int>(index)); }
  bool isPawn(Square square) const { return board_.at(square).isPawn(); }

  // Squares that a piece can go to, and enemy men worth attacking.
  int countEmpty(SquareSet reached) const { return (reached & empty_).count(); }
  int countTargets(SquareSet reached) const { return (reached & targets_).count(); }

  void knights(SquareSet knights, Worth& worth) const {
    const SquareTable& placement = KNIGHT_PLACEMENT[enemy_.pawns()];
    knights.forEach([&](unsigned index) {
      const SquareSet reached = knightReach(index);
      worth.phased += KNIGHT_MOBILITY[countEmpty(reached)] + KNIGHT_ATTACKS[countTargets(reached)];
      worth.placement += placement[relative(index)];
      if constexpr (ATTACK) worth.attack += attack_.knight(index);
    });
    (knights & sets_.pawns(OWN).behind(OWN)).forEach([&](unsigned index) {
      worth.placement += KNIGHT_PAWN_AHEAD[relative(index)];
    });
    (knights & sets_.pawns(ENEMY).behind(OWN).behind(OWN).behind(OWN)).forEach([&](unsigned index) {
      worth.placement += KNIGHT_CHASED[relative(index)];
    });
    (knights & ENEMY_CORNERS).forEach([&](unsigned index) {
      if (isKnightTrapped(squareOf(index))) worth.placement += TRAPPED_PIECE;
    });
  }

  void bishops(SquareSet bishops, Worth& worth) const {
    bishops.forEach([&](unsigned index) {
      const SquareSet reached = bishopReach(index, ~empty_);
      worth.phased += BISHOP_ATTACKS[countTargets(reached)];
      worth.placement += BISHOP_SQUARE[relative(index)] + BISHOP_MOBILITY[countEmpty(reached)];
      if constexpr (ATTACK) worth.attack += attack_.bishop(index);
    });
    (bishops & ENEMY_CORNERS).forEach([&](unsigned index) {
      if (isBishopTrapped(squareOf(index))) worth.placement += TRAPPED_PIECE;
    });
  }

  void rooks(SquareSet rooks, Worth& worth) const {
    rooks.forEach([&](unsigned index) {
      const SquareSet reached = rookReach(index, ~empty_);
      worth.phased += ROOK_MOBILITY[countEmpty(reached)] + ROOK_ATTACKS[countTargets(reached)];
      worth.placement += pawns_.rookOnFile[index % 8];
      if constexpr (ATTACK) worth.attack += attack_.rook(index);
    });
  }

  void queens(SquareSet queens, Worth& worth) const {
    queens.forEach([&](unsigned index) {
      worth.phased += QUEEN_SQUARE[relative(index)];
      worth.placement += QUEEN_NEAR_KING[sets_.king(ENEMY)][index];
      if constexpr (ATTACK) worth.attack += attack_.queen(index);
    });
  }

  // Rooks and queens that shut the king in on its last ranks.
  void behindEnemyLines(SquareSet rooks, SquareSet queens, Worth& worth) const {
    constexpr SquareSet LAST_RANKS = SquareSet::rank(SEVENTH, OWN) | SquareSet::rank(EIGHTH, OWN);
    if (((rooks | queens) & LAST_RANKS).empty()) return;
    rooks = rooks & LAST_RANKS;
    queens = queens & SquareSet::rank(SEVENTH, OWN);
    const int kingRank = board_.kingSquare(ENEMY).relativeRank(OWN);
    if (kingRank == SEVENTH) worth.placement += 10 * (rooks | queens).count();
    if (kingRank == EIGHTH) {
      worth.phased += PhaseScore(10, 40) * rooks.count() + PhaseScore(10, 32) * queens.count();
    }
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
  int rookShutIn(SquareSet rooks) const {
    if ((rooks & SHUT_IN[OWN][sets_.king(OWN)]).empty()) return 0;
    const bool right = sets_.king(OWN) % 8 > 3;
    return pawns_.hasPawnOn(right ? 6 : 0) && pawns_.hasPawnOn(right ? 7 : 1) ? ROOK_SHUT_IN : 0;
  }

  const Board& board_;
  const BoardSets& sets_;
  const PawnSideInfo& pawns_;
  const Material enemy_;
  const KingAttack<OWN> attack_;
  const SquareSet empty_;
  const SquareSet targets_;  // enemy men worth attacking
};

template <Color COLOR>
[[gnu::always_inline]] inline PieceActivity walk(const Board& board, const BoardSets& sets,
                                                 const PawnEntry& entry, unsigned force) {
  return force > 0 ? PieceWalk<COLOR, true>(board, sets, entry).result(force)
                   : PieceWalk<COLOR, false>(board, sets, entry).result(force);
}

using Forces = std::array<std::uint8_t, 2>;

[[gnu::always_inline]] inline std::array<PieceActivity, 2> walkBoth(const Board& board,
                                                                    const PawnEntry& entry,
                                                                    const Forces& force) {
  const BoardSets sets(board);
  return {walk<WHITE>(board, sets, entry, force[WHITE]),
          walk<BLACK>(board, sets, entry, force[BLACK])};
}

// The walk counts squares all the time.
const bool CAN_COUNT = countsBits();

[[OMBRIN_COUNTS_BITS, gnu::flatten]] std::array<PieceActivity, 2> countingWalk(
    const Board& board, const PawnEntry& entry, const Forces& force) {
  return walkBoth(board, entry, force);
}

}  // namespace

std::array<PieceActivity, 2> pieceActivity(const Board& board, const PawnEntry& entry,
                                           const Forces& force) {
  return CAN_COUNT ? countingWalk(board, entry, force) : walkBoth(board, entry, force);
}

}  // namespace ombrin
