#include "board/move_generation.h"

#include <algorithm>

#include "board/move_writer.h"

namespace ombrin {

namespace {

// Takes pinned pieces off their list for as long as it lives.
class PinnedPieces {
 public:
  explicit PinnedPieces(Board& board) : board_(board) {}
  PinnedPieces(const PinnedPieces&) = delete;
  PinnedPieces& operator=(const PinnedPieces&) = delete;
  ~PinnedPieces() {
    for (int i = 0; i < count_; ++i) board_.pieceSquare[pieces_[i].index()] ^= 128;
  }

  // Calls visit(pinned square, pinner square, step from the king) for every pin as it is found.
  template <typename Visitor>
  void find(Visitor&& visit) {
    const Color us = board_.side;
    const Square king = board_.kingSquare(us);
    for (const PieceType type : {BISHOP, ROOK, QUEEN}) {
      const int kind = Piece(~us, slotRun(type).first).kind();
      board_.forEach(~us, type, [&](Piece, Square pinner) {
        if ((kind & attacksOver(pinner - king) & LINE_ATTACK) == 0) return;
        const Delta step = stepAlong(pinner - king);
        const Square pinned = firstOnLine(board_, king, step);
        if (!board_.at(pinned).isOf(us) || firstOnLine(board_, pinned, step) != pinner) return;
        visit(pinned, pinner, step);
        pieces_[count_++] = board_.at(pinned);
        board_.pieceSquare[board_.at(pinned).index()] ^= 128;
      });
    }
  }

 private:
  Board& board_;
  std::array<Piece, 8> pieces_{};
  int count_ = 0;
};

// The moves of a pinned piece along the line from its king to the pinner.
void addPinnedMoves(const Board& board, MoveWriter& writer, Square pinned, Square pinner,
                    Delta step) {
  const Piece piece = board.at(pinned);
  if (piece.isPawn()) {
    if ((piece.kind() & attacksOver(pinner - pinned) & 63) != 0) {
      writer.addPawnMove(pinned, pinner);
    } else if (step == UP || step == -UP) {
      writer.addPawnSteps(pinned);
    }
    return;
  }
  if ((piece.kind() & attacksOver(step) & LINE_ATTACK) == 0) return;
  writer.add(pinned, pinner);
  for (const Delta way : {step, -step}) {
    for (Square to = pinned + way; board.at(to).isEmpty(); to += way) writer.add(pinned, to);
  }
}

// The king's steps, with the king lifted off the board while squares are tested, so that a slider
// that attacks it also attacks the squares behind it.
void addKingEscapes(Board& board, MoveWriter& writer) {
  const Color us = board.side;
  const Square from = board.kingSquare(us);
  board.at(from) = EMPTY;
  for (const Delta step : KING_STEPS) {
    const Square to = from + step;
    if (board.at(to).mayBeEnteredBy(us) && !isAttacked(board, ~us, to)) writer.add(from, to);
  }
  board.at(from) = Piece::king(us);
}

// The piece that gives the check that `lastMove` describes, when it is one piece.
Square findChecker(const Board& board, Square king, Move lastMove) {
  if (!lastMove.givesDirectCheck()) {
    return firstOnLine(board, king, stepAlong(lastMove.from() - king));
  }
  if (lastMove.isCastling()) {
    return lastMove.from() + (lastMove.to() - lastMove.from()) / 2;
  }
  if (lastMove.isEnPassant() &&
      !attacks(board, board.at(lastMove.to()).kind(), lastMove.to(), king)) {
    return firstOnLine(board, king, stepAlong(lastMove.enPassantVictim() - king));
  }
  return lastMove.to();
}

void addEvadingPawnMove(MoveWriter& writer, Square from, Square to) {
  if (to.relativeRank(writer.us()) != 7) {
    writer.add(from, to);
    return;
  }
  for (const PieceType type : {QUEEN, KNIGHT, BISHOP, ROOK}) {
    writer.add(from, to, Move::promotionTo(type));
  }
}

// Writes the moves of free pieces onto one square, for as long as pinned ones are off their lists.
class EvasionTarget {
 public:
  EvasionTarget(const Board& board, Move* out) : board_(board), out_(out) {}

  Move* end() const { return out_; }

  void capture(Square checker, bool byEnPassant) {
    MoveWriter writer(board_, out_);
    const Delta ahead = forward(board_.side);
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square from = checker - ahead + side;
      if (isFreePawn(from)) addEvadingPawnMove(writer, from, checker);
    }
    if (byEnPassant) writer.addEnPassant();
    out_ = genToSquare(board_, writer.end(), checker);
  }

  void block(Square square) {
    MoveWriter writer(board_, out_);
    const Delta ahead = forward(board_.side);
    const Square from = square - ahead;
    if (isFreePawn(from)) {
      addEvadingPawnMove(writer, from, square);
    } else if (square.relativeRank(board_.side) == 3 && board_.at(from).isEmpty() &&
               isFreePawn(from - ahead)) {
      writer.add(from - ahead, square, Move::DOUBLE_STEP);
    }
    out_ = genToSquare(board_, writer.end(), square);
  }

 private:
  bool isFreePawn(Square square) const {
    const Piece piece = board_.at(square);
    return piece.isPawnOf(board_.side) && board_.squareOf(piece) == square;
  }

  const Board& board_;
  Move* out_;
};

}  // namespace

Move* genMoves(Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  PinnedPieces pinned(board);
  pinned.find([&](Square square, Square pinner, Delta step) {
    addPinnedMoves(board, writer, square, pinner, step);
  });
  writer.addEnPassant();
  writer.addCastling();
  const Delta ahead = forward(us);
  board.forEach(us, PAWN, [&](Piece, Square from) {
    writer.addPawnCaptures(from);
    if ((from + ahead).relativeRank(us) != 7) {
      writer.addPawnSteps(from);
    } else if (board.at(from + ahead).isEmpty()) {
      writer.addPromotions(from, from + ahead);
    }
  });
  board.forEach(us, KNIGHT, [&](Piece, Square from) {
    for (const Delta step : KNIGHT_STEPS) {
      if (board.at(from + step).mayBeEnteredBy(us)) writer.add(from, from + step);
    }
  });
  board.forEach(us, BISHOP, [&](Piece, Square from) { writer.addSlides(from, BISHOP_ORDER); });
  board.forEach(us, ROOK, [&](Piece, Square from) { writer.addSlides(from, ROOK_ORDER); });
  board.forEach(us, QUEEN, [&](Piece, Square from) { writer.addSlides(from, QUEEN_ORDER); });
  const Square king = board.kingSquare(us);
  for (const Delta step : KING_STEPS) {
    const Square to = king + step;
    if (board.at(to).mayBeEnteredBy(us) && !isAttacked(board, ~us, to)) writer.add(king, to);
  }
  return writer.end();
}

Move* genEvasions(Board& board, Move* out, Move lastMove) {
  const Square king = board.kingSquare(board.side);
  Move* end = out;
  if (!lastMove.isDoubleCheck()) {
    PinnedPieces pinned(board);
    pinned.find([](Square, Square, Delta) {});
    const Square checker = findChecker(board, king, lastMove);
    EvasionTarget target(board, end);
    const bool doubleStepChecks = lastMove.isDoubleStep() && lastMove.to() == checker;
    target.capture(checker, doubleStepChecks);
    const Delta step = stepAlong(king - checker);
    for (Square square = checker + step; square != king; square += step) target.block(square);
    end = target.end();
  }
  MoveWriter writer(board, end);
  addKingEscapes(board, writer);
  return writer.end();
}

Move* genLegal(Board& board, Move* out, Move lastMove) {
  return lastMove.isCheck() ? genEvasions(board, out, lastMove) : genMoves(board, out);
}

Move* genToSquare(const Board& board, Move* out, Square square) {
  MoveWriter writer(board, out);
  for (const PieceType type : {KNIGHT, BISHOP, ROOK, QUEEN}) {
    const int kind = Piece(board.side, slotRun(type).first).kind();
    board.forEach(board.side, type, [&](Piece, Square from) {
      const int way = kind & attacksOver(square - from) & 63;
      if (way == 0) return;
      if ((way & LINE_ATTACK) != 0 &&
          firstOnLine(board, square, stepAlong(from - square)) != from) {
        return;
      }
      writer.add(from, square);
    });
  }
  return writer.end();
}

}  // namespace ombrin
