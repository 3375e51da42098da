// The generators of one category each, for the search's move picker.
#include "board/attack_sets.h"
#include "board/move_generation.h"
#include "board/move_writer.h"

namespace ombrin {

namespace {

// Two steps to squares from which a piece would attack the king; 0 leads to the piece's own square,
// which is never free.
struct CheckSteps {
  std::array<std::int8_t, 2> steps;
};

// Asks fill(ranks, files) for every difference king - piece of two squares.
template <typename Fill>
consteval std::array<CheckSteps, 256> makeCheckSteps(Fill fill) {
  std::array<CheckSteps, 256> table{};
  for (int ranks = -7; ranks <= 7; ++ranks) {
    for (int files = -7; files <= 7; ++files) {
      table[128 + 16 * ranks + files] = fill(ranks, files);
    }
  }
  return table;
}

constexpr std::array<CheckSteps, 256> KNIGHT_CHECKS = makeCheckSteps([](int ranks, int files) {
  CheckSteps steps{};
  int count = 0;
  for (const Delta step : KNIGHT_STEPS) {
    // Split the step into ranks and files; a file step is between -2 and 2.
    const int stepRanks = (step + 2 * 16 + 8) / 16 - 2;
    const int stepFiles = step - 16 * stepRanks;
    const int restRanks = ranks - stepRanks;
    const int restFiles = files - stepFiles;
    if (restRanks * restRanks + restFiles * restFiles == 5 && count < 2) {
      steps.steps[count++] = static_cast<std::int8_t>(step);
    }
  }
  return steps;
});

constexpr std::array<CheckSteps, 256> BISHOP_CHECKS = makeCheckSteps([](int ranks, int files) {
  CheckSteps steps{};
  if ((ranks + files) % 2 == 0) {
    steps.steps = {static_cast<std::int8_t>(17 * ((ranks + files) / 2)),
                   static_cast<std::int8_t>(15 * ((ranks - files) / 2))};
  }
  return steps;
});

constexpr std::array<CheckSteps, 256> ROOK_CHECKS = makeCheckSteps([](int ranks, int files) {
  return CheckSteps{{static_cast<std::int8_t>(16 * ranks), static_cast<std::int8_t>(files)}};
});

// Quiet checks of the side to move against one king.
class CheckWriter {
 public:
  CheckWriter(const Board& board, Move* out)
      : board_(board), writer_(board, out), us_(board.side), king_(board.kingSquare(~board.side)) {}

  Move* end() const { return writer_.end(); }

  void addPawnChecks() {
    const Delta ahead = forward(us_);
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square to = king_ - ahead + side;
      if (board_.at(to).isEmpty() && board_.at(to - ahead).isPawnOf(us_)) {
        writer_.add(to - ahead, to, Move::CHECK);
      }
    }
    if (king_.relativeRank(us_) != 4) return;
    for (const Delta side : {-RIGHT, RIGHT}) {
      const Square to = king_ - ahead + side;
      if (board_.at(to).isEmpty() && board_.at(to - ahead).isEmpty() &&
          board_.at(to - 2 * ahead).isPawnOf(us_)) {
        writer_.add(to - 2 * ahead, to, Move::DOUBLE_STEP | Move::CHECK);
      }
    }
  }

  void addKnightChecks() {
    board_.forEach(us_, KNIGHT, [this](Piece, Square from) {
      for (const Delta step : KNIGHT_CHECKS[128 + (king_ - from)].steps) {
        if (board_.at(from + step).isEmpty()) writer_.add(from, from + step, Move::CHECK);
      }
    });
  }

  // `mayMask` tells which piece between the new square and the king makes the move an x-ray.
  template <typename MayMask>
  void addLineChecks(PieceType type, const std::array<CheckSteps, 256>& table, MayMask mayMask) {
    board_.forEach(us_, type, [&](Piece, Square from) {
      for (const Delta difference : table[128 + (king_ - from)].steps) {
        const Square to = from + difference;
        if (!board_.at(to).isEmpty()) continue;
        const Square first = firstOnLine(board_, to, stepAlong(king_ - to));
        std::uint32_t flag = Move::CHECK;
        if (first != king_) {
          if (!mayMask(board_.at(first))) continue;
          if (firstOnLine(board_, first, stepAlong(king_ - to)) != king_) continue;
          flag = Move::XRAY;
        }
        if (firstOnLine(board_, to, stepAlong(from - to)) == from) writer_.add(from, to, flag);
      }
    });
  }

  void addQueenChecks() {
    board_.forEach(us_, QUEEN, [this](Piece, Square from) {
      for (const Delta ray : KING_STEPS) {
        for (Square to = king_ + ray; board_.at(to).isEmpty(); to += ray) {
          if (isLine(to - from) && firstOnLine(board_, to, stepAlong(from - to)) == from) {
            writer_.add(from, to, Move::CHECK);
          }
        }
      }
    });
  }

 private:
  const Board& board_;
  MoveWriter writer_;
  Color us_;
  Square king_;
};

// The non-captures of the piece on `from`, which stands alone between an own slider and the enemy
// king; `step` leads from that king to it.
void addUnmaskingMoves(const Board& board, MoveWriter& writer, Square from, Delta step) {
  const Color us = board.side;
  const Piece piece = board.at(from);
  switch (piece.type()) {
    case PAWN:
      if (step != UP && step != -UP && (from + forward(us)).relativeRank(us) != 7) {
        writer.addPawnSteps(from);
      }
      break;
    case KNIGHT:
      for (const Delta jump : KNIGHT_STEPS) {
        if (board.at(from + jump).isEmpty()) writer.add(from, from + jump);
      }
      break;
    case KING:
      for (const Delta way : KING_STEPS) {
        if (way == step || way == -step) continue;
        if (board.at(from + way).isEmpty() && !isAttacked(board, ~us, from + way)) {
          writer.add(from, from + way);
        }
      }
      break;
    case BISHOP:
      writer.addQuietSlides(from, BISHOP_ORDER);
      break;
    case ROOK:
      writer.addQuietSlides(from, ROOK_ORDER);
      break;
    default:
      writer.addQuietSlides(from, QUEEN_ORDER);
      break;
  }
}

bool isQueenOrRook(Piece piece) {
  return piece != OFF_BOARD && (piece.type() == QUEEN || piece.type() == ROOK);
}
bool isQueen(Piece piece) {
  return piece != OFF_BOARD && piece.type() == QUEEN;
}

}  // namespace

Move* genCaptures(const Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  const Delta ahead = forward(us);
  const SquareSet enemies = board.byColor[~us];
  const SquareSet occupied = board.occupied();
  writer.addEnPassant();
  const SquareSet movers =
      (enemies.pawnAttacks(~us) | SquareSet::rank(6, us)) & board.men(us, PAWN);
  if (!movers.empty()) {
    board.forEach(us, PAWN, [&](Piece, Square from) {
      if (!movers.contains(from)) return;
      writer.addPawnCaptures(from);
      if ((from + ahead).relativeRank(us) == 7 && board.at(from + ahead).isEmpty()) {
        writer.addPromotions(from, from + ahead);
      }
    });
  }
  board.forEach(us, KNIGHT, [&](Piece, Square from) {
    (knightReach(from.index64()) & enemies).forEachSquare([&](Square to) { writer.add(from, to); });
  });
  board.forEach(us, BISHOP, [&](Piece, Square from) {
    writer.addSlidingCaptures(from, bishopReach(from.index64(), occupied) & enemies, BISHOP_ORDER);
  });
  board.forEach(us, ROOK, [&](Piece, Square from) {
    writer.addSlidingCaptures(from, rookReach(from.index64(), occupied) & enemies, ROOK_ORDER);
  });
  board.forEach(us, QUEEN, [&](Piece, Square from) {
    writer.addSlidingCaptures(from, queenReach(from.index64(), occupied) & enemies, QUEEN_ORDER);
  });
  const Square king = board.kingSquare(us);
  if (!(kingReach(king.index64()) & enemies).empty()) {
    for (const Delta step : KING_STEPS) {
      const Square to = king + step;
      if (board.at(to).isOf(~us) && !isAttacked(board, ~us, to)) writer.add(king, to);
    }
  }
  return writer.end();
}

Move* genQuiet(const Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  const Delta ahead = forward(us);
  writer.addCastling();
  board.forEach(us, KNIGHT, [&](Piece, Square from) {
    for (const Delta step : KNIGHT_STEPS) {
      if (board.at(from + step).isEmpty()) writer.add(from, from + step);
    }
  });
  board.forEach(us, BISHOP, [&](Piece, Square from) { writer.addQuietSlides(from, BISHOP_ORDER); });
  board.forEach(us, ROOK, [&](Piece, Square from) { writer.addQuietSlides(from, ROOK_ORDER); });
  board.forEach(us, QUEEN, [&](Piece, Square from) { writer.addQuietSlides(from, QUEEN_ORDER); });
  board.forEach(us, PAWN, [&](Piece, Square from) {
    const Square to = from + ahead;
    if (!board.at(to).isEmpty() || to.relativeRank(us) == 7) return;
    if (writer.mayStepTwice(from)) writer.add(from, to + ahead, Move::DOUBLE_STEP);
    writer.add(from, to);
  });
  return writer.end();
}

Move* genKingQuiet(const Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  const Square king = board.kingSquare(us);
  for (const Delta step : KING_STEPS) {
    const Square to = king + step;
    if (board.at(to).isEmpty() && !isAttacked(board, ~us, to)) writer.add(king, to);
  }
  return writer.end();
}

Move* genQuietChecks(const Board& board, Move* out) {
  CheckWriter writer(board, out);
  writer.addPawnChecks();
  writer.addKnightChecks();
  writer.addLineChecks(BISHOP, BISHOP_CHECKS, isQueenOrRook);
  writer.addLineChecks(ROOK, ROOK_CHECKS, isQueen);
  writer.addQueenChecks();
  return writer.end();
}

Move* genDiscoveredQuiet(const Board& board, Move* out) {
  MoveWriter writer(board, out);
  const Color us = board.side;
  const Square king = board.kingSquare(~us);
  for (const PieceType type : {BISHOP, ROOK, QUEEN}) {
    const int kind = Piece(us, slotRun(type).first).kind();
    board.forEach(us, type, [&](Piece, Square slider) {
      if (!slidesOver(kind, slider - king)) return;
      const Delta step = stepAlong(slider - king);
      const Square masking = firstOnLine(board, king, step);
      if (masking == slider || !board.at(masking).isOf(us)) return;
      if (firstOnLine(board, masking, step) != slider) return;
      addUnmaskingMoves(board, writer, masking, step);
    });
  }
  return writer.end();
}

}  // namespace ombrin
