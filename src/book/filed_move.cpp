#include "book/filed_move.h"

#include "book/book_key.h"
#include "book/polyglot_key.h"

namespace ombrin {

BookEntry filedMove(const Board& board, Move move, BookKind kind) {
  BookEntry entry;
  entry.from = static_cast<std::uint8_t>(move.from().number() | static_cast<int>(board.side) << 7);
  entry.to = static_cast<std::uint8_t>(move.to().number());
  if (kind == BookKind::OBK) {
    entry.key = bookKey(board);
    return entry;
  }
  entry.key = polyglotKey(board);
  entry.promotion = move.promotion();
  if (move.isCastling()) {
    const int rookFile = move.to().file() == 6 ? 7 : 0;
    entry.to = static_cast<std::uint8_t>(Square::at(rookFile, move.to().rank()).number());
  }
  return entry;
}

}  // namespace ombrin
