#include "eval/pawn_race.h"

#include <algorithm>
#include <cstdlib>

#include "board/attacks.h"
#include "util/print.h"

namespace ombrin {

namespace {

// The quickest unstoppable pawn of one colour that was found.
struct Runner {
  static constexpr int NONE = 99;

  int moves = NONE;  // that it needs to promote
  int file = -1;

  bool exists() const { return moves != NONE; }
  void offer(int otherMoves, int otherFile) {
    if (otherMoves < moves) *this = {otherMoves, otherFile};
  }
};

// Looks for the unstoppable pawns of one colour, whose opponent has no pieces.
class RunnerSearch {
 public:
  RunnerSearch(const Board& board, const PawnEntry& entry, Color color)
      : color_(color),
        pawns_(entry.sides[color]),
        king_(board.kingSquare(color)),
        defender_(board.kingSquare(~color)),
        defenderMoves_(board.side == color ? 0 : 1),
        keySquaresCount_(
            !(entry.sides[~color].passedCount > 0 && !board.material(color).hasPieces())) {}

  Runner find() const {
    Runner best;
    for (int n = pawns_.passedCount - 1; n >= 0; --n) examinePawn(pawns_.passedPawn(n), best);
    for (int i = 1; i < pawns_.passedCount; ++i) {
      for (int j = 0; j < i; ++j) {
        examinePair(pawns_.passedPawn(i), pawns_.passedPawn(j), best);
      }
    }
    return best;
  }

 private:
  int rank(Square square) const { return square.relativeRank(color_); }
  Square squareAt(int file, int relativeRank) const {
    return Square::at(file, color_ == WHITE ? relativeRank : 7 - relativeRank);
  }
  // Moves to promotion, the double step included.
  int movesOf(Square pawn) const { return std::min(7 - rank(pawn), 5); }

  void examinePawn(Square pawn, Runner& best) const {
    int moves = movesOf(pawn);
    if (king_.file() == pawn.file() && rank(king_) > rank(pawn)) {
      if (isKingShutIn()) return;
      ++moves;  // the king steps aside
    }
    if (outrunsDefender(pawn, moves) || hasKingsHelp(pawn)) best.offer(moves, pawn.file());
  }

  // The own king in the corner before its rook pawn, with no way out past the defender.
  bool isKingShutIn() const {
    if ((king_.file() != 0 && king_.file() != 7) || rank(king_) < 6) return false;
    const Square opposite = king_ + (king_.file() == 0 ? 2 * RIGHT : -2 * RIGHT);
    return defender_ == opposite || (rank(king_) == 7 && defender_ == opposite - forward(color_));
  }

  // The rule of the square; a king that covers the pawn's way brings the goal closer.
  bool outrunsDefender(Square pawn, int moves) const {
    Square target = squareAt(pawn.file(), 7);
    if (std::abs(king_.file() - pawn.file()) <= 1) {
      const int kingRank = rank(king_);
      if (kingRank >= 6 ||
          (kingRank >= 4 && kingDistance(defender_, target) > 7 - kingRank + defenderMoves_)) {
        target = squareAt(pawn.file(), kingRank - 1);
        moves += kingRank - 9;
      }
    }
    return moves < kingDistance(defender_, target) - defenderMoves_;
  }

  bool hasKingsHelp(Square pawn) const {
    if (pawn.file() == 0 || pawn.file() == 7) return leadsRookPawn(pawn);
    return keySquaresCount_ && reachesKeySquare(pawn);
  }

  bool leadsRookPawn(Square pawn) const {
    const Square promotion = squareAt(pawn.file(), 7);
    return kingDistance(pawn, king_) <= kingDistance(pawn, defender_) - defenderMoves_ &&
           kingDistance(promotion, king_) < kingDistance(promotion, defender_) - defenderMoves_;
  }

  // The key squares lie two ranks ahead; for a pawn on the seventh rank that is one rank beyond the
  // board, to which distances can be measured all the same.
  bool reachesKeySquare(Square pawn) const {
    const bool hasOpposition = defender_ == king_ + 2 * forward(color_);
    const int lead = hasOpposition ? 0 : defenderMoves_;
    const Square middle = pawn + 2 * forward(color_);
    return std::ranges::any_of(std::array{-RIGHT, 0, RIGHT}, [&](Delta side) {
      const Square key = middle + side;
      return kingDistance(key, defender_) - kingDistance(key, king_) > lead;
    });
  }

  // Two pawns so far apart that the defender cannot hold both.
  void examinePair(Square first, Square second, Runner& best) const {
    const int gap = std::abs(first.file() - second.file());
    if (gap <= 1) return;
    const int distance = std::min(kingDistance(defender_, squareAt(first.file(), 7 - gap)),
                                  kingDistance(defender_, squareAt(second.file(), 7 - gap)));
    if (distance == 0) return;
    int spare = distance - defenderMoves_;
    int firstMoves = movesOf(first);
    int secondMoves = movesOf(second);
    spendTempi(firstMoves, gap, spare);
    spendTempi(secondMoves, gap, spare);
    if (firstMoves > gap || secondMoves > gap || spare <= 0) return;
    best.offer(std::max(firstMoves, secondMoves),
               firstMoves <= secondMoves ? first.file() : second.file());
  }

  // Advances a pawn to where it needs no more than `gap` moves, if the spare tempi allow it.
  static void spendTempi(int& moves, int gap, int& spare) {
    const int needed = moves - gap;
    if (spare == 0 || needed <= 0 || needed > spare) return;
    spare -= needed;
    moves = gap;
  }

  Color color_;
  const PawnSideInfo& pawns_;
  Square king_;
  Square defender_;
  int defenderMoves_;  // 1 when the defender is to move
  bool keySquaresCount_;
};

struct Race {
  Runner white;
  Runner black;

  const Runner& of(Color color) const { return color == WHITE ? white : black; }
};

Square promotionSquare(Color color, const Runner& runner) {
  return Square::at(runner.file, color == WHITE ? 7 : 0);
}

int wonBy(Color color, const Runner& runner) {
  const int value = 500 - 25 * runner.moves;
  return color == WHITE ? value : -value;
}

// Does `first`, which queens one move ahead, stop the other pawn: because its queen covers that
// promotion square, or comes with check?
bool queensInTime(const Board& board, Color first, const Race& race) {
  const Square king = board.kingSquare(~first);
  const Square own = promotionSquare(first, race.of(first));
  const Square other = promotionSquare(~first, race.of(~first));
  const int gap = std::abs(own.file() - other.file());
  if ((gap == 0 || gap == 7) && (attacksOver(king - other) & KING_ATTACK) == 0) return true;
  return isLine(king - own) && isLineOpen(board, own, king);
}

int decide(const Board& board, const Race& race) {
  const auto& [white, black] = race;
  if (!white.exists() && !black.exists()) return 0;
  // Equal counts, or the side not to move one ahead: both promote, in that order.
  const Runner& mover = race.of(board.side);
  const Runner& waiter = race.of(~board.side);
  if (mover.moves == waiter.moves || waiter.moves == mover.moves - 1) {
    const Color first = mover.moves == waiter.moves ? board.side : ~board.side;
    return queensInTime(board, first, race) ? wonBy(first, race.of(first)) : 0;
  }
  if (white.moves < black.moves) return wonBy(WHITE, white);
  if (black.moves < white.moves) return wonBy(BLACK, black);
  print(stdout, "pawnevaluator(): not reached!");
  std::abort();
}

}  // namespace

int pawnevaluator(const Board& board, const PawnEntry& entry) {
  const bool whiteHasPieces = board.WhiteMaterial.hasPieces();
  const bool blackHasPieces = board.BlackMaterial.hasPieces();
  if (whiteHasPieces && blackHasPieces) return 0;
  Race race;
  if (!blackHasPieces) race.white = RunnerSearch(board, entry, WHITE).find();
  if (!whiteHasPieces) race.black = RunnerSearch(board, entry, BLACK).find();
  return decide(board, race);
}

}  // namespace ombrin
