#pragma once

#include "board/board.h"
#include "eval/pawn_hash.h"

namespace ombrin {

// Where the men of each kind stand.
class BoardSets {
 public:
  BoardSets(const Board& board, const PawnEntry&)
      : men_(board.byColor),
        pawns_{board.men(WHITE, PAWN), board.men(BLACK, PAWN)},
        pawnAttacks_{pawns_[WHITE].pawnAttacks(WHITE), pawns_[BLACK].pawnAttacks(BLACK)},
        knights_(board.byType[KNIGHT]),
        bishops_(board.byType[BISHOP]),
        rooks_(board.byType[ROOK]),
        queens_(board.byType[QUEEN]) {}

  SquareSet men(Color color) const { return men_[color]; }
  SquareSet occupied() const { return men_[WHITE] | men_[BLACK]; }
  SquareSet pawns(Color color) const { return pawns_[color]; }
  SquareSet pawnAttacks(Color color) const { return pawnAttacks_[color]; }
  // Of both colours.
  SquareSet knights() const { return knights_; }
  SquareSet bishops() const { return bishops_; }
  SquareSet rooks() const { return rooks_; }
  SquareSet queens() const { return queens_; }

 private:
  std::array<SquareSet, 2> men_;
  std::array<SquareSet, 2> pawns_;
  std::array<SquareSet, 2> pawnAttacks_;
  SquareSet knights_;
  SquareSet bishops_;
  SquareSet rooks_;
  SquareSet queens_;
};

}  // namespace ombrin
