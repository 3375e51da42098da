#include "book/polyglot_key.h"

#include <array>

#include "book/polyglot_numbers.h"

namespace ombrin {

namespace {

// The place of a kind of piece in the list of numbers, by type: those of White follow Black's.
constexpr std::array<int, 8> KINDS = {0, 0, 2, 10, 0, 4, 6, 8};

constexpr std::array<int, 4> RIGHTS = {WHITE_KING_SIDE, WHITE_QUEEN_SIDE, BLACK_KING_SIDE,
                                       BLACK_QUEEN_SIDE};

// Is a pawn beside the one that made a double step? That it might be pinned does not matter.
bool canTakeEnPassant(const Board& board) {
  if (!board.hasEnPassant()) return false;
  const Square victim = Square(board.epSquare).acrossDoubleStep();
  return board.at(victim + RIGHT).isPawnOf(board.side) ||
         board.at(victim - RIGHT).isPawnOf(board.side);
}

}  // namespace

std::uint64_t polyglotKey(const Board& board) {
  std::uint64_t key = board.side == WHITE ? polyglot::WHITE_TO_MOVE : 0;
  for (const Color color : {WHITE, BLACK}) {
    for (const PieceType type : PIECE_TYPES) {
      const auto& numbers = polyglot::PIECES[KINDS[type] + (color == WHITE ? 1 : 0)];
      board.forEach(color, type, [&](Piece, Square square) { key ^= numbers[square.index64()]; });
    }
  }
  for (std::size_t i = 0; i < RIGHTS.size(); ++i) {
    if ((board.rights & RIGHTS[i]) != 0) key ^= polyglot::CASTLING[i];
  }
  if (canTakeEnPassant(board)) key ^= polyglot::EN_PASSANT[Square(board.epSquare).file()];
  return key;
}

}  // namespace ombrin
