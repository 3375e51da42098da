// Twins of positions, for what must not depend on colour or wing.
#pragma once

#include "board/board.h"
#include "board/zobrist.h"

namespace ombrin {

// The position seen in a mirror: with the colours exchanged, or with the files, or both. The lists
// keep their order, so that what depends on it is the same.
inline void mirror(const Board& board, bool colors, bool files, Board& twin) {
  const auto image = [&](Square square) {
    if (files) square = Square(square.number() ^ 7);
    return colors ? square.flipped() : square;
  };
  twin.clear();
  for (const Color color : {WHITE, BLACK}) {
    for (const PieceType type : PIECE_TYPES) {
      board.forEach(color, type, [&](Piece, Square square) {
        twin.addPiece(colors ? ~color : color, type, image(square));
      });
    }
  }
  twin.side = colors ? ~board.side : board.side;
  for (const Color color : {WHITE, BLACK}) {
    const Color twinColor = colors ? ~color : color;
    if ((board.rights & kingSideRight(color)) != 0) twin.rights |= kingSideRight(twinColor);
    if ((board.rights & queenSideRight(color)) != 0) twin.rights |= queenSideRight(twinColor);
  }
  twin.hash ^= castleKey(twin.rights);
}

// What the two sides' men are worth together depends on who is asked first for a pair of bishops.
inline bool isPairAskedInTurn(const Board& board) {
  const Material white = board.WhiteMaterial;
  const Material black = board.BlackMaterial;
  return white.bishops() >= 2 && black.bishops() >= 2 && white.bishops() != black.bishops() &&
         !white.sameMajors(black);
}

}  // namespace ombrin
