#pragma once

#include <emmintrin.h>

#include <array>
#include <cstdint>

#include "board/board.h"
#include "board/square_set.h"

namespace ombrin {

// Where the men of each colour stand, gathered from the mailbox: one evaluation asks often enough
// to pay for it.
class BoardSets {
 public:
  explicit BoardSets(const Board& board) {
    std::array<std::uint64_t, 2> bits{};
    for (int rank = 0; rank < 8; rank += 2) {
      // Two ranks of eight piece indices, whose two highest bits are the colours.
      const __m128i pieces = _mm_unpacklo_epi64(load(board, rank), load(board, rank + 1));
      const int black = _mm_movemask_epi8(pieces);
      const int white = _mm_movemask_epi8(_mm_add_epi8(pieces, pieces));
      bits[WHITE] |= static_cast<std::uint64_t>(white) << (8 * rank);
      bits[BLACK] |= static_cast<std::uint64_t>(black) << (8 * rank);
    }
    men_ = {SquareSet(bits[WHITE]), SquareSet(bits[BLACK])};
  }

  SquareSet men(Color color) const { return men_[color]; }
  SquareSet occupied() const { return men_[WHITE] | men_[BLACK]; }

 private:
  static_assert(colorBit(WHITE) == 64 && colorBit(BLACK) == 128 && sizeof(Piece) == 1);
  static __m128i load(const Board& board, int rank) {
    return _mm_loadl_epi64(
        reinterpret_cast<const __m128i*>(&board.squares[64 + Square::at(0, rank).number()]));
  }

  std::array<SquareSet, 2> men_;
};

}  // namespace ombrin
