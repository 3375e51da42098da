#pragma once

#include <array>

#include "board/board.h"

namespace ombrin {

// Where the men of each kind stand, and what the terms of one evaluation ask about it again and
// again. Of a board that does not change meanwhile.
class BoardSets {
 public:
  explicit BoardSets(const Board& board)
      : board_(board),
        occupied_(board.occupied()),
        pawns_{board.men(WHITE, PAWN), board.men(BLACK, PAWN)},
        pawnAttacks_{pawns_[WHITE].pawnAttacks(WHITE), pawns_[BLACK].pawnAttacks(BLACK)},
        kings_{static_cast<unsigned>(board.kingSquare(WHITE).index64()),
               static_cast<unsigned>(board.kingSquare(BLACK).index64())} {}

  SquareSet men(Color color) const { return board_.byColor[color]; }
  SquareSet occupied() const { return occupied_; }
  SquareSet pawns(Color color) const { return pawns_[color]; }
  SquareSet pawnAttacks(Color color) const { return pawnAttacks_[color]; }
  // Its index in tables, 0 to 63.
  unsigned king(Color color) const { return kings_[color]; }
  // Of both colours.
  SquareSet knights() const { return board_.byType[KNIGHT]; }
  SquareSet bishops() const { return board_.byType[BISHOP]; }
  SquareSet rooks() const { return board_.byType[ROOK]; }
  SquareSet queens() const { return board_.byType[QUEEN]; }

 private:
  const Board& board_;
  SquareSet occupied_;
  std::array<SquareSet, 2> pawns_;
  std::array<SquareSet, 2> pawnAttacks_;
  std::array<unsigned, 2> kings_;
};

}  // namespace ombrin
