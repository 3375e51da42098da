#include "board/exchange.h"

#include <algorithm>
#include <array>

#include "board/attacks.h"
#include "board/geometry.h"

namespace ombrin {

namespace {

// The men of one side that can capture on a square, cheapest first. The king is not among them.
class Capturers {
 public:
  Capturers(const Board& board, Color color, Square target) : board_(board), color_(color) {
    const Square behind = target - forward(color);
    for (const Delta side : {-RIGHT, RIGHT}) {
      if (board.at(behind + side).isPawnOf(color)) squares_[end_++] = behind + side;
    }
    for (const PieceType type : {KNIGHT, BISHOP, ROOK, QUEEN}) {
      const int kind = Piece(color, slotRun(type).first).kind();
      board.forEach(color, type, [&](Piece piece, Square from) {
        const int way = kind & attacksOver(target - from) & 63;
        if (way == 0 || board.at(from) != piece) return;  // lifted for the exchange
        if ((way & LINE_ATTACK) != 0 &&
            firstOnLine(board, target, stepAlong(from - target)) != from) {
          return;
        }
        squares_[end_++] = from;
      });
    }
  }

  bool empty() const { return next_ == end_; }

  // Captures with the cheapest man and returns its value; what stood masked behind it joins.
  int capture(Square target) {
    const Square from = squares_[next_++];
    const int value = board_.at(from).value();
    if (isLine(from - target)) {
      const Delta step = stepAlong(from - target);
      const Square behind = firstOnLine(board_, from, step);
      const Piece piece = board_.at(behind);
      if (piece.isOf(color_) && (piece.kind() & attacksOver(step) & LINE_ATTACK) != 0) {
        insert(behind);
      }
    }
    return value;
  }

 private:
  void insert(Square square) {
    int place = end_++;
    for (; place > next_ && valueAt(place - 1) > board_.at(square).value(); --place) {
      squares_[place] = squares_[place - 1];
    }
    squares_[place] = square;
  }
  int valueAt(int index) const { return board_.at(squares_[index]).value(); }

  const Board& board_;
  Color color_;
  std::array<Square, 24> squares_;
  int next_ = 0;
  int end_ = 0;
};

bool isNextTo(const Board& board, Color color, Square target) {
  return (attacksOver(target - board.kingSquare(color)) & KING_ATTACK) != 0;
}

}  // namespace

int see(Board& board, Color side, Move move) {
  const Square from = move.from();
  const Square target = move.to();
  const bool queens = move.promotion() == QUEEN;
  const int gain = move.captured().value() + (queens ? 8 : 0);
  const Piece mover = board.at(from);
  // Even when it is taken in return, it has not lost more than it took.
  if (!queens && move.captured().value() >= mover.value()) return gain;

  board.at(from) = EMPTY;
  std::array<Capturers, 2> capturers = {Capturers(board, ~side, target),
                                        Capturers(board, side, target)};
  std::array<bool, 2> hasKing = {isNextTo(board, ~side, target), isNextTo(board, side, target)};
  if (mover.type() == KING) hasKing[1] = false;  // it stands on the target

  // Swap off. swap[n] is what the side that captures n-th has won when the exchange ends there.
  std::array<int, 40> swap;
  swap[0] = gain;
  int depth = 0;
  int standing = queens ? 10 : mover.value();
  for (int turn = 0;; turn ^= 1) {
    int capturing = 0;
    if (!capturers[turn].empty()) {
      capturing = capturers[turn].capture(target);
    } else if (hasKing[turn] && capturers[turn ^ 1].empty() && !hasKing[turn ^ 1]) {
      hasKing[turn] = false;
    } else {
      break;
    }
    ++depth;
    swap[depth] = standing - swap[depth - 1];
    standing = capturing;
  }
  board.at(from) = mover;

  for (; depth > 0; --depth) swap[depth - 1] = std::min(swap[depth - 1], -swap[depth]);
  return swap[0] < 0 ? swap[0] : gain;
}

}  // namespace ombrin
