// The pieces that all generators are built from.
#pragma once

#include "board/attacks.h"
#include "board/board.h"
#include "board/move.h"

namespace ombrin {

// Directions in the order in which the moves of sliders are written.
inline constexpr std::array<Delta, 4> BISHOP_ORDER = {15, 17, -15, -17};
inline constexpr std::array<Delta, 4> ROOK_ORDER = {1, -1, 16, -16};
inline constexpr std::array<Delta, 8> QUEEN_ORDER = {15, 17, -15, -17, 1, -1, 16, -16};

// Writes the moves of one side of one board behind each other.
class MoveWriter {
 public:
  MoveWriter(const Board& board, Move* out)
      : board_(board), us_(board.side), forward_(forward(us_)), out_(out) {}

  Move* end() const { return out_; }
  Color us() const { return us_; }

  void add(Square from, Square to, std::uint32_t special = 0) {
    *out_++ = Move(from, to, board_.at(to), special);
  }
  // In the order in which they are most often right.
  void addPromotions(Square from, Square to) {
    for (const PieceType type : {QUEEN, KNIGHT, ROOK, BISHOP}) {
      add(from, to, Move::promotionTo(type));
    }
  }
  // A pawn's move that may reach the last rank.
  void addPawnMove(Square from, Square to) {
    if (to.relativeRank(us_) == 7) {
      addPromotions(from, to);
    } else {
      add(from, to);
    }
  }
  void addPawnCaptures(Square from) {
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square to = from + forward_ + side;
      if (board_.at(to).isOf(~us_)) addPawnMove(from, to);
    }
  }
  bool mayStepTwice(Square from) const {
    return from.relativeRank(us_) == 1 && board_.at(from + 2 * forward_).isEmpty();
  }
  // The steps of a pawn, promotions aside.
  void addPawnSteps(Square from) {
    if (!board_.at(from + forward_).isEmpty()) return;
    add(from, from + forward_);
    if (mayStepTwice(from)) add(from, from + 2 * forward_, Move::DOUBLE_STEP);
  }
  void addEnPassant() {
    if (!mayCaptureEnPassant()) return;
    const Square to(board_.epSquare);
    const Square victim = to.acrossDoubleStep();
    for (const Delta side : {-RIGHT, RIGHT}) {
      if (board_.at(victim + side).isPawnOf(us_)) {
        *out_++ = Move(victim + side, to, board_.at(victim), Move::EN_PASSANT);
      }
    }
  }
  void addCastling() {
    const Square king = board_.kingSquare(us_);
    if ((board_.rights & kingSideRight(us_)) != 0 && board_.at(king + 1).isEmpty() &&
        board_.at(king + 2).isEmpty()) {
      add(king, king + 2, Move::CASTLING);
    }
    if ((board_.rights & queenSideRight(us_)) != 0 && board_.at(king - 1).isEmpty() &&
        board_.at(king - 2).isEmpty() && board_.at(king - 3).isEmpty()) {
      add(king, king - 2, Move::CASTLING);
    }
  }
  // The squares that the pieces of a slider's kind of step reach: empty ones, then a capture.
  template <std::size_t N>
  void addSlides(Square from, const std::array<Delta, N>& steps) {
    for (const Delta step : steps) {
      Square to = from + step;
      for (; board_.at(to).isEmpty(); to += step) add(from, to);
      if (board_.at(to).isOf(~us_)) add(from, to);
    }
  }
  template <std::size_t N>
  void addQuietSlides(Square from, const std::array<Delta, N>& steps) {
    for (const Delta step : steps) {
      for (Square to = from + step; board_.at(to).isEmpty(); to += step) add(from, to);
    }
  }
  // Onto the squares that a slider reaches; the order only matters when there are several.
  template <std::size_t N>
  void addSlidingCaptures(Square from, SquareSet reached, const std::array<Delta, N>& steps) {
    if (!reached.hasSeveral()) {
      reached.forEachSquare([this, from](Square to) { add(from, to); });
      return;
    }
    for (const Delta step : steps) {
      const Square to = firstOnLine(board_, from, step);
      if (board_.at(to).isOf(~us_)) add(from, to);
    }
  }

 private:
  // A set-up may name a square that fits no capture; it yields no move.
  bool mayCaptureEnPassant() const {
    if (!board_.hasEnPassant()) return false;
    const Square to(board_.epSquare);
    return to.relativeRank(us_) == 5 && board_.at(to).isEmpty() &&
           board_.at(to.acrossDoubleStep()).isPawnOf(~us_);
  }

  const Board& board_;
  Color us_;
  Delta forward_;
  Move* out_;
};

}  // namespace ombrin
