#pragma once

#include "board/board.h"
#include "book/book_entry.h"
#include "book/book_kind.h"

namespace ombrin {

// The position and a legal move of it as a book of that kind files them, without any games.
BookEntry filedMove(const Board& board, Move move, BookKind kind);

// The square that a king on `king` goes to when he castles with the rook on `rook`.
constexpr Square castlingTarget(Square king, Square rook) {
  return Square::at(rook.file() > king.file() ? 6 : 2, king.rank());
}

}  // namespace ombrin
