#include "board/move_generation.h"

#include "board/attack_sets.h"
#include "board/move_writer.h"

namespace ombrin {

namespace {

// The pinned pieces of the side to move. Calls visit(pinned square, pinner square, step from the
// king) for every pin as it is found.
template <typename Visitor>
SquareSet findPins(const Board& board, Visitor&& visit) {
  SquareSet pins;
  const Color us = board.side;
  const Square king = board.kingSquare(us);
  for (const PieceType type : {BISHOP, ROOK, QUEEN}) {
    const int kind = Piece(~us, slotRun(type).first).kind();
    board.forEach(~us, type, [&](Piece, Square pinner) {
      if (!slidesOver(kind, pinner - king)) return;
      const Delta step = stepAlong(pinner - king);
      const Square pinned = firstOnLine(board, king, step);
      if (!board.at(pinned).isOf(us) || firstOnLine(board, pinned, step) != pinner) return;
      visit(pinned, pinner, step);
      pins |= SquareSet::of(pinned);
    });
  }
  return pins;
}

// The moves of a pinned piece along the line from its king to the pinner.
void addPinnedMoves(const Board& board, MoveWriter& writer, Square pinned, Square pinner,
                    Delta step) {
  const Piece piece = board.at(pinned);
  if (piece.isPawn()) {
    if ((piece.kind() & attacksOver(pinner - pinned)) != 0) {
      writer.addPawnMove(pinned, pinner);
    } else if (step == UP || step == -UP) {
      writer.addPawnSteps(pinned);
    }
    return;
  }
  if (!slidesOver(piece.kind(), step)) return;
  writer.add(pinned, pinner);
  for (const Delta way : {step, -step}) {
    for (Square to = pinned + way; board.at(to).isEmpty(); to += way) writer.add(pinned, to);
  }
}

// The king's steps. A slider that attacks the king attacks the square behind it, too.
void addKingEscapes(const Board& board, MoveWriter& writer) {
  const Color us = board.side;
  const Square from = board.kingSquare(us);
  for (const Delta step : KING_STEPS) {
    const Square to = from + step;
    if (!board.at(to).mayBeEnteredBy(us) || isAttacked(board, ~us, to)) continue;
    if (!isSliderAhead(board, ~us, from, -step)) writer.add(from, to);
  }
}

// The piece that gives the check that `lastMove` describes, when it is one piece.
Square findChecker(const Board& board, Square king, Move lastMove) {
  if (!lastMove.givesDirectCheck()) {
    return firstOnLine(board, king, stepAlong(lastMove.from() - king));
  }
  if (lastMove.isCastling()) return lastMove.castledRook();
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

// Writes the moves of the pieces that are not pinned onto one square.
class EvasionTarget {
 public:
  EvasionTarget(const Board& board, SquareSet pins, MoveWriter& writer)
      : board_(board), pins_(pins), writer_(writer) {}

  void capture(Square checker, bool byEnPassant) {
    const Delta ahead = forward(board_.side);
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square from = checker - ahead + side;
      if (isFreePawn(from)) addEvadingPawnMove(writer_, from, checker);
    }
    if (byEnPassant) writer_.addEnPassant();
    addPieces(checker);
  }

  void block(Square square) {
    const Delta ahead = forward(board_.side);
    const Square from = square - ahead;
    if (isFreePawn(from)) {
      addEvadingPawnMove(writer_, from, square);
    } else if (square.relativeRank(board_.side) == 3 && board_.at(from).isEmpty() &&
               isFreePawn(from - ahead)) {
      writer_.add(from - ahead, square, Move::DOUBLE_STEP);
    }
    addPieces(square);
  }

 private:
  bool isFreePawn(Square square) const {
    return board_.at(square).isPawnOf(board_.side) && !pins_.contains(square);
  }

  // Knights, bishops, rooks and queens.
  void addPieces(Square to) {
    for (const PieceType type : {KNIGHT, BISHOP, ROOK, QUEEN}) {
      const int kind = Piece(board_.side, slotRun(type).first).kind();
      board_.forEach(board_.side, type, [&](Piece, Square from) {
        if (reaches(board_, kind, from, to) && !pins_.contains(from)) writer_.add(from, to);
      });
    }
  }

  const Board& board_;
  SquareSet pins_;
  MoveWriter& writer_;
};

}  // namespace

Move* genMoves(const Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  const SquareSet pins = findPins(board, [&](Square square, Square pinner, Delta step) {
    addPinnedMoves(board, writer, square, pinner, step);
  });
  const auto forEachFree = [&](PieceType type, auto&& visit) {
    board.forEach(us, type, [&](Piece, Square from) {
      if (!pins.contains(from)) visit(from);
    });
  };
  writer.addEnPassant();
  writer.addCastling();
  const Delta ahead = forward(us);
  forEachFree(PAWN, [&](Square from) {
    writer.addPawnCaptures(from);
    if ((from + ahead).relativeRank(us) != 7) {
      writer.addPawnSteps(from);
    } else if (board.at(from + ahead).isEmpty()) {
      writer.addPromotions(from, from + ahead);
    }
  });
  forEachFree(KNIGHT, [&](Square from) {
    for (const Delta step : KNIGHT_STEPS) {
      if (board.at(from + step).mayBeEnteredBy(us)) writer.add(from, from + step);
    }
  });
  forEachFree(BISHOP, [&](Square from) { writer.addSlides(from, BISHOP_ORDER); });
  forEachFree(ROOK, [&](Square from) { writer.addSlides(from, ROOK_ORDER); });
  forEachFree(QUEEN, [&](Square from) { writer.addSlides(from, QUEEN_ORDER); });
  const Square king = board.kingSquare(us);
  for (const Delta step : KING_STEPS) {
    const Square to = king + step;
    if (board.at(to).mayBeEnteredBy(us) && !isAttacked(board, ~us, to)) writer.add(king, to);
  }
  return writer.end();
}

Move* genEvasions(const Board& board, Move* out, Move lastMove) {
  const Square king = board.kingSquare(board.side);
  MoveWriter writer(board, out);
  if (!lastMove.isDoubleCheck()) {
    const SquareSet pins = findPins(board, [](Square, Square, Delta) {});
    const Square checker = findChecker(board, king, lastMove);
    EvasionTarget target(board, pins, writer);
    const bool doubleStepChecks = lastMove.isDoubleStep() && lastMove.to() == checker;
    target.capture(checker, doubleStepChecks);
    const Delta step = stepAlong(king - checker);
    for (Square square = checker + step; square != king; square += step) target.block(square);
  }
  addKingEscapes(board, writer);
  return writer.end();
}

MoveList pseudoLegalMoves(const Board& board, Move lastMove) {
  MoveList moves;
  if (lastMove.isCheck()) {
    moves.append([&](Move* out) { return genEvasions(board, out, lastMove); });
  } else {
    moves.append([&](Move* out) { return genMoves(board, out); });
  }
  return moves;
}

MoveList legalMoves(const Board& board, Move lastMove) {
  MoveList moves = pseudoLegalMoves(board, lastMove);
  moves.removeIf([&board](Move move) { return !isLegal(board, move); });
  return moves;
}

MoveList legalMoves(const Board& board) {
  return legalMoves(board, board.lastMove());
}

bool isLegalCastling(const Board& board, Move move) {
  return !isAttacked(board, ~board.side, move.to()) &&
         !isAttacked(board, ~board.side, move.castledRook());
}

bool isLegalEnPassant(const Board& board, Move move) {
  SquareSet occupied = board.occupied();
  occupied ^= SquareSet::of(move.from()) | SquareSet::of(move.enPassantVictim());
  occupied |= SquareSet::of(move.to());
  const auto king = static_cast<unsigned>(board.kingSquare(board.side).index64());
  const SquareSet enemies = board.byColor[~board.side];
  const SquareSet diagonal = enemies & (board.byType[BISHOP] | board.byType[QUEEN]);
  const SquareSet straight = enemies & (board.byType[ROOK] | board.byType[QUEEN]);
  return (bishopReach(king, occupied) & diagonal).empty() &&
         (rookReach(king, occupied) & straight).empty();
}

}  // namespace ombrin
