#pragma once

#include <array>
#include <cstdint>

#include "board/color.h"
#include "board/material.h"
#include "board/move.h"
#include "board/piece.h"
#include "board/square.h"
#include "board/square_set.h"

namespace ombrin {

// Castling rights, as bits.
enum CastlingRight : std::uint8_t {
  WHITE_KING_SIDE = 1,
  BLACK_KING_SIDE = 2,
  WHITE_QUEEN_SIDE = 4,
  BLACK_QUEEN_SIDE = 8,
};
constexpr int kingSideRight(Color color) {
  return WHITE_KING_SIDE << color;
}
constexpr int queenSideRight(Color color) {
  return WHITE_QUEEN_SIDE << color;
}

// What making a move destroys and the histories do not keep. Whoever makes a move saves it first
// (Board::save) and hands it back to unmakeMove.
struct SavedState {
  std::uint64_t phash;
  std::uint16_t lastIrreversible;
  std::uint8_t rights;
  std::uint8_t epSquare;
};

// The position: a mailbox of piece indices, piece lists grouped by type, and the moves that led
// here. It keeps no in-check flag: the check flags of the last move tell.
//
// A Board belongs to one thread at a time. The only positions that reach one are those that setFen
// (fen.h) accepts and those made from them by legal moves, so every board has one king of each
// colour, no more men than its lists hold, and a side not to move that is not in check.
class Board {
 public:
  // Moves that can be made between two set-ups, and the headroom that a search needs of them.
  static constexpr int HISTORY = 1024;
  static constexpr int SEARCH_HEADROOM = 160;
  static constexpr int MAX_PROMOTED = 16;
  static constexpr std::uint8_t FREE = 255;

  Board() { clear(); }
  Board(const Board&) = delete;  // copyFrom copies only the part of the histories that is in use
  Board& operator=(const Board&) = delete;

  // No men, White to move, nothing remembered.
  void clear();
  void copyFrom(const Board& other);
  // Closes the gaps that captured pieces left in the piece lists, keeping the order of the others.
  // Piece indices change and the keys do not, so repetitions are still found, but the moves made so
  // far can no longer be taken back.
  void compactPieces();
  // Forgets the oldest moves when fewer than SEARCH_HEADROOM more could be made, keeping all that a
  // repetition or the fifty-move rule can still ask for; droppedPlies tells how many went. To be
  // called before a move is made on a game's board.
  void makeRoom();

  // The move that led here, with its check flags as far as its maker passed them on.
  Move lastMove() const { return ply > 0 ? moveHistory[ply - 1] : rootMove; }

  Piece at(Square square) const { return squares[64 + square.number()]; }
  Piece& at(Square square) { return squares[64 + square.number()]; }
  // Of a captured piece, a square off the board.
  Square squareOf(Piece piece) const { return Square(pieceSquare[piece.index()]); }
  Square kingSquare(Color color) const { return squareOf(Piece::king(color)); }
  Material material(Color color) const { return color == WHITE ? WhiteMaterial : BlackMaterial; }
  Material& material(Color color) { return color == WHITE ? WhiteMaterial : BlackMaterial; }
  bool hasEnPassant() const { return epSquare != 0; }
  // Plies since the set-up, forgotten ones included.
  std::uint32_t gamePly() const { return ply + droppedPlies; }
  // Half-moves since the last capture or pawn move.
  std::uint32_t reversiblePlies() const { return ply - lastIrreversible; }
  SavedState save() const { return {phash, lastIrreversible, rights, epSquare}; }

  // Calls visit(Piece, Square) for every living piece of that colour and type, in list order. The
  // visitor may not change the list it walks.
  template <typename Visitor>
  void forEach(Color color, PieceType type, Visitor&& visit) const {
    const std::uint8_t* entry = &pieceSquare[Piece(color, slotRun(type).first).index()];
    for (int index = Piece(color, slotRun(type).first).index(); *entry != FREE; ++entry, ++index) {
      if ((*entry & 0x88) == 0) visit(Piece(index), Square(*entry));
    }
  }

  // Puts a piece into the first free slot of its run and returns it; keys and material follow. The
  // run must have a free slot.
  Piece addPiece(Color color, PieceType type, Square square);

  SquareSet occupied() const { return byColor[WHITE] | byColor[BLACK]; }
  SquareSet men(Color color, PieceType type) const { return byColor[color] & byType[type]; }
  // Brings men of one kind into the sets and takes them out.
  void toggleInSets(Piece piece, SquareSet places) {
    byColor[piece.color()] ^= places;
    byType[piece.type()] ^= places;
  }

  // Recomputed from scratch.
  std::uint64_t computeHash() const;
  std::uint64_t computePawnHash() const;
  Material computeMaterial(Color color) const;

  // Element 64 + s is square s; every element that is no square holds OFF_BOARD, so that a slide in
  // any direction ends on a non-empty element before it leaves the array.
  std::array<Piece, 256> squares;
  // By piece index: its square. A captured piece keeps its square plus 128; FREE marks a free slot
  // and every terminator; entry 0 is 0.
  std::array<std::uint8_t, 192> pieceSquare;
  // The squares of the living men that the lists name: of a colour, and of a type in both colours.
  std::array<SquareSet, 2> byColor;
  std::array<SquareSet, 8> byType;
  // Zobrist key of pieces, castling rights and en-passant square; the side to move is not in it.
  std::uint64_t hash;
  Color side;
  // Moves made since the set-up (less droppedPlies); index of the next entry of the histories.
  std::uint32_t ply;
  Material WhiteMaterial;
  Material BlackMaterial;
  // Zobrist key of the pawns alone.
  std::uint64_t phash;
  // `ply` after the last capture or pawn move.
  std::uint16_t lastIrreversible;
  std::uint8_t rights;
  // The square that a double step passed over, when an enemy pawn stands ready beside the pawn (or
  // as a set-up gave it); 0 for none.
  std::uint8_t epSquare;
  // Entry i: the key before the i-th move, and that move as it was passed to makeMove.
  std::array<std::uint64_t, HISTORY> hashHistory;
  std::array<Move, HISTORY> moveHistory;
  // The pawns that have promoted, the latest last.
  std::array<Piece, MAX_PROMOTED> promoted;
  std::uint32_t promotedCount;
  // The move that led to the root position, with its check flags; 0 when unknown.
  Move rootMove;
  std::uint32_t droppedPlies;
};

}  // namespace ombrin
