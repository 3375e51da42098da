#include "board/exchange.h"

#include <algorithm>
#include <array>
#include <optional>

#include "board/attack_sets.h"
#include "board/attacks.h"
#include "board/geometry.h"

namespace ombrin {

namespace {

// The men of one side that can capture on a square, cheapest first. The king is not among them, nor
// the man that has left `vacated`.
class Capturers {
 public:
  // Of the pieces that reach the square, those of this colour are taken.
  Capturers(const Board& board, Color color, Square target, Square vacated, SquareSet pieces)
      : board_(board), color_(color), vacated_(vacated) {
    const Square behind = target - forward(color);
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square from = behind + side;
      if (board.at(from).isPawnOf(color) && from != vacated) append(from);
    }
    const int pawns = end_;
    // A dearer piece has a higher index, and of two equals the one earlier in the list goes first.
    (pieces & board.byColor[color]).forEachSquare([&](Square from) {
      insert(from, pawns,
             [&](Square other) { return board_.at(other).index() > board_.at(from).index(); });
    });
  }

  bool empty() const { return next_ == end_; }

  // Captures with the cheapest man and returns its value; what stood masked behind it joins.
  int capture(Square target) {
    const Square from(squares_[next_++]);
    const int value = board_.at(from).value();
    if (isLine(from - target)) {
      const Delta step = stepAlong(from - target);
      Square behind = firstOnLine(board_, from, step);
      if (behind == vacated_) behind = firstOnLine(board_, behind, step);
      const Piece piece = board_.at(behind);
      if (piece.isOf(color_) && slidesOver(piece.kind(), step)) {
        insert(behind, next_,
               [&](Square other) { return board_.at(other).value() > piece.value(); });
      }
    }
    return value;
  }

 private:
  void append(Square square) { squares_[end_++] = static_cast<std::uint8_t>(square.number()); }

  // Puts the square behind the last one, from `first` on, that need not wait for it.
  template <typename Waits>
  void insert(Square square, int first, Waits waits) {
    int place = end_++;
    for (; place > first && waits(Square(squares_[place - 1])); --place) {
      squares_[place] = squares_[place - 1];
    }
    squares_[place] = static_cast<std::uint8_t>(square.number());
  }

  const Board& board_;
  Color color_;
  Square vacated_;
  std::array<std::uint8_t, 24> squares_;
  int next_ = 0;
  int end_ = 0;
};

// All knights, bishops, rooks and queens that reach the square when `vacated` is empty.
SquareSet piecesReaching(const Board& board, Square target, Square vacated) {
  const SquareSet gone = SquareSet::of(vacated);
  const SquareSet occupied = board.occupied() & ~gone;
  const SquareSet queens = board.byType[QUEEN];
  const SquareSet pieces =
      (knightReach(target.index64()) & board.byType[KNIGHT]) |
      (bishopReach(target.index64(), occupied) & (board.byType[BISHOP] | queens)) |
      (rookReach(target.index64(), occupied) & (board.byType[ROOK] | queens));
  return pieces & ~gone;
}

// Both sides capture on a move's destination in turn, its opponent first, each with its cheapest
// man. The mover has left its square.
class Exchange {
 public:
  Exchange(const Board& board, Color side, Move move)
      : board_(board),
        side_(side),
        target_(move.to()),
        vacated_(move.from()),
        pieces_(piecesReaching(board, target_, vacated_)) {}

  // The next capture: true with the value of the man that makes it, false when there is none. A
  // king captures only when nobody is left to take it.
  bool capture(int& value) {
    Player& player = found(turn_);
    if (!player.men->empty()) {
      value = player.men->capture(target_);
    } else if (player.isKingNear) {
      const Player& other = found(turn_ ^ 1);
      if (!other.men->empty() || other.isKingNear) return false;
      player.isKingNear = false;
      value = 0;
    } else {
      return false;
    }
    turn_ ^= 1;
    return true;
  }

 private:
  struct Player {
    std::optional<Capturers> men;
    bool isKingNear = false;
  };

  // The men are looked for when they are first asked for: most exchanges end before one side's
  // are.
  Player& found(int turn) {
    Player& player = players_[turn];
    if (!player.men) {
      const Color color = turn == 0 ? ~side_ : side_;
      player.men.emplace(board_, color, target_, vacated_, pieces_);
      player.isKingNear = (attacksOver(target_ - board_.kingSquare(color)) & KING_ATTACK) != 0;
    }
    return player;
  }

  const Board& board_;
  Color side_;
  Square target_;
  Square vacated_;
  SquareSet pieces_;  // that can capture at once
  int turn_ = 0;
  std::array<Player, 2> players_;
};

constexpr int PAWN_VALUE = 1;

bool isAttackedByPawn(const Board& board, Color by, Square target) {
  return board.men(by, PAWN).pawnAttacks(by).contains(target);
}

// The value of what stands on the destination after the move.
int valueAtRisk(const Board& board, Move move) {
  return move.promotion() == QUEEN ? 10 : board.at(move.from()).value();
}

}  // namespace

int see(const Board& board, Color side, Move move) {
  const int gain = gainOf(move);
  int standing = valueAtRisk(board, move);
  if (gain >= standing) return gain;

  // swap[n] is what the side that captures n-th has won when the exchange ends there.
  std::array<int, 40> swap;
  swap[0] = gain;
  int depth = 0;
  Exchange exchange(board, side, move);
  for (int capturing = 0; exchange.capture(capturing); standing = capturing) {
    ++depth;
    swap[depth] = standing - swap[depth - 1];
  }
  for (; depth > 0; --depth) swap[depth - 1] = std::min(swap[depth - 1], -swap[depth]);
  return swap[0] < 0 ? swap[0] : gain;
}

// A side that would still be behind after its capture does not make it, and the other side has
// what it wanted. What such a capture would win is known before anybody has to look for it.
bool losesMaterial(const Board& board, Color side, Move move) {
  int won = gainOf(move);
  int standing = valueAtRisk(board, move);
  if (won >= standing) return false;
  if (won + PAWN_VALUE < standing && isAttackedByPawn(board, ~side, move.to())) return true;

  Exchange exchange(board, side, move);
  for (int capturing = 0;; standing = capturing) {
    if (!exchange.capture(capturing)) return false;
    won = standing - won;
    if (won <= 0) return false;
    standing = capturing;
    if (standing < won || !exchange.capture(capturing)) return true;
    won = standing - won;
  }
}

}  // namespace ombrin
