#include "eval/king_safety.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

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

// Units of enemy pieces: above CASTLING_UNITS castling matters, and up to ENDGAME_UNITS the king
// should take part in the game.
constexpr int CASTLING_UNITS = 12;
constexpr int ENDGAME_UNITS = 13;

// By the king's file.
constexpr std::array<int, 8> KING_ZONE = {0, 0, 0, 1, 1, 2, 2, 2};

// How many files a king is away from the nearest file with a pawn, beside all of them; by the files
// without pawns, as bits, and the king's file. 0 when there are no pawns.
constexpr auto OUTSIDE = [] {
  std::array<std::array<std::uint8_t, 8>, 256> table{};
  for (int without = 0; without < 255; ++without) {
    const auto bits = static_cast<std::uint8_t>(without);
    const int first = std::countr_one(bits);
    const int last = 7 - std::countl_one(bits);
    for (int file = 0; file < 8; ++file) {
      table[without][file] = static_cast<std::uint8_t>(std::max({first - file, file - last, 0}));
    }
  }
  return table;
}();

// What a danger costs: grows faster with every threshold that it exceeds.
constexpr unsigned penaltyOf(int danger) {
  unsigned penalty = 0;
  for (const int threshold : {8, 16, 24, 32, 48, 64, 80, 96}) {
    if (danger <= threshold) break;
    penalty += static_cast<unsigned>(danger - threshold);
  }
  return penalty;
}
// Nearly all that are met.
constexpr auto PENALTY = [] {
  std::array<std::uint16_t, 160> table;
  for (int danger = 0; danger < 160; ++danger) {
    table[danger] = static_cast<std::uint16_t>(penaltyOf(danger));
  }
  return table;
}();

// The king of DEFENDER.
template <Color DEFENDER>
class KingSafety {
 public:
  KingSafety(const Board& board, const PawnEntry& entry, const PieceActivity& attackers)
      : board_(board),
        attackers_(attackers),
        pawns_(entry.sides[DEFENDER]),
        enemyPawns_(entry.sides[~DEFENDER]),
        enemy_(board.material(~DEFENDER)),
        king_(board.kingSquare(DEFENDER)),
        cover_(pawns_.cover[KING_ZONE[king_.file()]]) {}

  int value() const {
    int value = -SPAN_OWN[OUTSIDE[pawns_.filesWithoutPawns][king_.file()]];
    value -= attackPenalty();
    if (enemy_.units() > CASTLING_UNITS) value += castling();
    return enemy_.units() > ENDGAME_UNITS ? value : endgame(value);
  }

 private:
  int attackPenalty() const {
    if (attackers_.force == 0) return 0;
    const int base =
        static_cast<int>(attackers_.kingAttack / 4) + KING_ZONE_BASE[tableIndex(king_, DEFENDER)];
    const int danger = (16 - cover_) * base / 16 + base + (board_.side == DEFENDER ? 4 : 0);
    const unsigned penalty = danger >= 0 && danger < static_cast<int>(PENALTY.size())
                                 ? PENALTY[danger]
                                 : penaltyOf(danger);
    return static_cast<int>(penalty * attackers_.force / 8 * 12 / 32);
  }

  // The pawns around the king, or around where castling would take it.
  int castling() const {
    const Piece front = board_.at(king_ + forward(DEFENDER));
    const bool bishopInFront = front.isOf(DEFENDER) && front.type() == BISHOP;
    const int now = cover_ + (bishopInFront ? 2 : 0);
    constexpr int RIGHTS = kingSideRight(DEFENDER) | queenSideRight(DEFENDER);
    const int average = (board_.rights & RIGHTS) == 0
                            ? now
                            : (std::max(now, kingSide(now)) + std::max(now, queenSide(now))) / 2;
    return -8 * enemy_.units() * (16 - average) / 32;
  }
  int kingSide(int now) const {
    if ((board_.rights & kingSideRight(DEFENDER)) == 0) return now;
    return pawns_.cover[2] - 3 - (isFree(RIGHT) ? 0 : 1) + (isFree(2 * RIGHT) ? 1 : 0);
  }
  int queenSide(int now) const {
    if ((board_.rights & queenSideRight(DEFENDER)) == 0) return now;
    return pawns_.cover[0] - 4 - (isFree(-RIGHT) ? 0 : 1) + (isFree(-2 * RIGHT) ? 1 : 0) +
           (isFree(-3 * RIGHT) ? 1 : 0);
  }
  bool isFree(Delta fromKing) const { return board_.at(king_ + fromKing).isEmpty(); }

  int endgame(int value) const {
    value -= SPAN_ENEMY[OUTSIDE[enemyPawns_.filesWithoutPawns][king_.file()]];
    value += KING_ENDGAME[tableIndex(king_, DEFENDER)];
    return PAWN_FACTOR[enemy_.pawns()] * MATERIAL_FACTOR[enemy_.units()] * value / 256;
  }

  const Board& board_;
  const PieceActivity& attackers_;
  const PawnSideInfo& pawns_;
  const PawnSideInfo& enemyPawns_;
  const Material enemy_;
  const Square king_;
  const int cover_;
};

}  // namespace

int kingSafety(const Board& board, const PawnEntry& entry, Color color,
               const PieceActivity& attackers) {
  return color == WHITE ? KingSafety<WHITE>(board, entry, attackers).value()
                        : KingSafety<BLACK>(board, entry, attackers).value();
}

}  // namespace ombrin
