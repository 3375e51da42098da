#include "board/board.h"

#include <algorithm>
#include <cassert>

#include "board/zobrist.h"

namespace ombrin {

namespace {

// How many moves makeRoom leaves: far more than the hundred plies that a draw rule looks back over.
constexpr std::uint32_t KEPT_PLIES = 512;

}  // namespace

void Board::clear() {
  squares.fill(OFF_BOARD);
  for (int index = 0; index < 128; ++index) {
    if (const Square square(index); square.isOnBoard()) at(square) = EMPTY;
  }
  pieceSquare.fill(FREE);
  pieceSquare[0] = 0;
  byColor = {};
  byType = {};
  hash = 0;
  side = WHITE;
  ply = 0;
  WhiteMaterial = BlackMaterial = Material();
  phash = 0;
  lastIrreversible = 0;
  rights = 0;
  epSquare = 0;
  promotedCount = 0;
  rootMove = NULL_MOVE;
  droppedPlies = 0;
}

void Board::copyFrom(const Board& other) {
  squares = other.squares;
  pieceSquare = other.pieceSquare;
  byColor = other.byColor;
  byType = other.byType;
  hash = other.hash;
  side = other.side;
  ply = other.ply;
  WhiteMaterial = other.WhiteMaterial;
  BlackMaterial = other.BlackMaterial;
  phash = other.phash;
  lastIrreversible = other.lastIrreversible;
  rights = other.rights;
  epSquare = other.epSquare;
  const std::size_t entries = std::min<std::size_t>(other.ply + 1, HISTORY);
  std::copy_n(other.hashHistory.begin(), entries, hashHistory.begin());
  std::copy_n(other.moveHistory.begin(), entries, moveHistory.begin());
  promoted = other.promoted;
  promotedCount = other.promotedCount;
  rootMove = other.rootMove;
  droppedPlies = other.droppedPlies;
}

void Board::compactPieces() {
  for (const Color color : {WHITE, BLACK}) {
    for (const PieceType type : PIECE_TYPES) {
      int next = Piece(color, slotRun(type).first).index();
      int index = next;
      for (; pieceSquare[index] != FREE; ++index) {
        const Square square(pieceSquare[index]);
        if (!square.isOnBoard()) continue;
        pieceSquare[next] = static_cast<std::uint8_t>(square.number());
        at(square) = Piece(next);
        ++next;
      }
      for (; next < index; ++next) pieceSquare[next] = FREE;
    }
  }
}

void Board::makeRoom() {
  if (ply + SEARCH_HEADROOM < HISTORY) return;
  // An even number, so that move pairs stay pairs.
  const std::uint32_t dropped = (ply - KEPT_PLIES) & ~1U;
  std::copy(hashHistory.begin() + dropped, hashHistory.begin() + ply, hashHistory.begin());
  std::copy(moveHistory.begin() + dropped, moveHistory.begin() + ply, moveHistory.begin());
  ply -= dropped;
  droppedPlies += dropped;
  lastIrreversible =
      static_cast<std::uint16_t>(lastIrreversible > dropped ? lastIrreversible - dropped : 0);
}

Piece Board::addPiece(Color color, PieceType type, Square square) {
  int index = Piece(color, slotRun(type).first).index();
  while (pieceSquare[index] != FREE) ++index;
  assert(Piece(index).slot() < slotRun(type).terminator);
  const Piece piece(index);
  pieceSquare[index] = static_cast<std::uint8_t>(square.number());
  pieceSquare[index + 1] = FREE;
  at(square) = piece;
  toggleInSets(piece, SquareSet::of(square));
  material(color) += Material::of(type);
  hash ^= pieceKey(piece, square);
  if (type == PAWN) phash ^= pieceKey(piece, square);
  return piece;
}

std::uint64_t Board::computeHash() const {
  std::uint64_t key = castleKey(rights);
  if (hasEnPassant()) key ^= enPassantKey(Square(epSquare));
  for (const Color color : {WHITE, BLACK}) {
    for (const PieceType type : PIECE_TYPES) {
      forEach(color, type, [&key](Piece piece, Square square) { key ^= pieceKey(piece, square); });
    }
  }
  return key;
}

std::uint64_t Board::computePawnHash() const {
  std::uint64_t key = 0;
  for (const Color color : {WHITE, BLACK}) {
    forEach(color, PAWN, [&key](Piece piece, Square square) { key ^= pieceKey(piece, square); });
  }
  return key;
}

Material Board::computeMaterial(Color color) const {
  Material sum;
  for (const PieceType type : PIECE_TYPES) {
    forEach(color, type, [&sum, type](Piece, Square) { sum += Material::of(type); });
  }
  return sum;
}

}  // namespace ombrin
