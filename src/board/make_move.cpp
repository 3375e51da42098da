#include "board/make_move.h"

#include "board/attacks.h"
#include "board/move_generation.h"
#include "board/zobrist.h"

namespace ombrin {

namespace {

// A move from or to a square keeps only the rights in that square's mask.
consteval std::array<std::uint8_t, 128> makeCastlingMasks() {
  std::array<std::uint8_t, 128> masks{};
  masks.fill(15);
  const auto lose = [&masks](Square square, int rights) {
    masks[square.number()] = static_cast<std::uint8_t>(15 & ~rights);
  };
  lose(A1, WHITE_QUEEN_SIDE);
  lose(E1, WHITE_KING_SIDE | WHITE_QUEEN_SIDE);
  lose(H1, WHITE_KING_SIDE);
  lose(A8, BLACK_QUEEN_SIDE);
  lose(E8, BLACK_KING_SIDE | BLACK_QUEEN_SIDE);
  lose(H8, BLACK_KING_SIDE);
  return masks;
}
constexpr std::array<std::uint8_t, 128> CASTLING_MASKS = makeCastlingMasks();

struct RookMove {
  Square from;
  Square to;
};

// The rook's part of a castling.
RookMove castlingRook(Move move) {
  const bool kingSide = move.to().number() > move.from().number();
  return {kingSide ? move.to() + RIGHT : move.to() - 2 * RIGHT, move.castledRook()};
}

// Enters the move into the histories.
void record(Board& board, Move move) {
  board.moveHistory[board.ply] = move;
  board.hashHistory[board.ply] = board.hash;
  ++board.ply;
}

// Puts the piece on `from` on `to`, without keys.
void shift(Board& board, Square from, Square to) {
  const Piece piece = board.at(from);
  board.at(to) = piece;
  board.pieceSquare[piece.index()] = static_cast<std::uint8_t>(to.number());
  board.at(from) = EMPTY;
  board.toggleInSets(piece, SquareSet::of(from) | SquareSet::of(to));
}

// Captured pieces keep their entry, moved off the board by its top bit; a second time brings them
// back.
void toggleCaptured(Board& board, Piece piece, Square square) {
  board.pieceSquare[piece.index()] ^= 128;
  board.toggleInSets(piece, SquareSet::of(square));
}

void dropEnPassant(Board& board) {
  if (!board.hasEnPassant()) return;
  board.hash ^= enPassantKey(Square(board.epSquare));
  board.epSquare = 0;
}

void dropRights(Board& board, Square from, Square to) {
  const int lost = board.rights & ~(CASTLING_MASKS[from.number()] & CASTLING_MASKS[to.number()]);
  if (lost == 0) return;
  board.hash ^= castleKey(lost);
  board.rights = static_cast<std::uint8_t>(board.rights ^ lost);
}

void capture(Board& board, Piece captured, Square square) {
  toggleCaptured(board, captured, square);
  board.lastIrreversible = static_cast<std::uint16_t>(board.ply);
  const std::uint64_t key = pieceKey(captured, square);
  board.hash ^= key;
  if (captured.isPawn()) board.phash ^= key;
  board.material(~board.side) -= Material::of(captured.type());
}

// Does the slider on `from`, or any other piece, attack the king?
bool attacksKing(const Board& board, Square from, Square king) {
  return attacks(board, board.at(from).kind(), from, king);
}

// With what stood on `left` gone and the mover on `to`, does a slider of colour `by` look through
// `left` at the king?
bool revealsLine(const Board& board, Color by, Square king, Square left, Square to) {
  if (!isLine(left - king)) return false;
  const Delta step = stepAlong(left - king);
  return stepAlong(to - king) != step && isSliderAhead(board, by, king, step);
}

// Hands the move over: the other side is to move, and the word learns what check it gives.
Move finish(Board& board, Move move) {
  const Color mover = board.side;
  board.side = ~mover;
  const Square king = board.kingSquare(board.side);
  const Square from = move.from();
  const Square to = move.to();
  std::uint32_t flags = 0;
  if (revealsLine(board, mover, king, from, to)) flags |= Move::DISCOVERED_CHECK;
  if (attacksKing(board, to, king)) flags |= Move::CHECK;
  return move.with(flags);
}

Move makeCastling(Board& board, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const RookMove rook = castlingRook(move);
  const Color enemy = ~board.side;
  dropRights(board, from, from);
  const Piece king = board.at(from);
  const Piece tower = board.at(rook.from);
  board.hash ^= pieceKey(king, from) ^ pieceKey(king, to);
  board.hash ^= pieceKey(tower, rook.from) ^ pieceKey(tower, rook.to);
  shift(board, from, to);
  shift(board, rook.from, rook.to);
  dropEnPassant(board);
  board.side = enemy;
  const bool check = attacksKing(board, rook.to, board.kingSquare(enemy));
  return check ? move.with(Move::CHECK) : move;
}

Move makeEnPassant(Board& board, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const Square victim = move.enPassantVictim();
  const Color mover = board.side;
  const Piece pawn = board.at(from);
  board.at(victim) = EMPTY;
  capture(board, move.captured(), victim);
  const std::uint64_t key = pieceKey(pawn, from) ^ pieceKey(pawn, to);
  board.hash ^= key;
  board.phash ^= key;
  dropEnPassant(board);
  shift(board, from, to);
  const Move made = finish(board, move);
  if (made.givesDirectCheck()) return made;

  // The captured pawn may have masked a slider of the mover's.
  const Square king = board.kingSquare(board.side);
  const bool reveals = victim.rank() != king.rank() && revealsLine(board, mover, king, victim, to);
  return reveals ? made.with(Move::CHECK) : made;
}

Move makePromotion(Board& board, Move move) {
  const Square from = move.from();
  const Square to = move.to();
  const Color mover = board.side;
  dropRights(board, from, to);
  if (move.isCapture()) capture(board, move.captured(), to);
  board.lastIrreversible = static_cast<std::uint16_t>(board.ply);
  const Piece pawn = board.at(from);
  board.hash ^= pieceKey(pawn, from);
  board.phash ^= pieceKey(pawn, from);
  board.promoted[board.promotedCount++] = pawn;
  toggleCaptured(board, pawn, from);
  board.material(mover) -= Material::of(PAWN);
  board.addPiece(mover, move.promotion(), to);
  board.at(from) = EMPTY;
  dropEnPassant(board);
  return finish(board, move);
}

Move makeSpecial(Board& board, Move move) {
  record(board, move);
  if (move.isCastling()) return makeCastling(board, move);
  if (move.isEnPassant()) return makeEnPassant(board, move);
  return makePromotion(board, move);
}

void unmakePromotion(Board& board, Move move) {
  const Piece piece = board.at(move.to());
  board.pieceSquare[piece.index()] = Board::FREE;
  board.toggleInSets(piece, SquareSet::of(move.to()));
  board.material(board.side) -= Material::of(piece.type());
  board.material(board.side) += Material::of(PAWN);
  const Piece pawn = board.promoted[--board.promotedCount];
  toggleCaptured(board, pawn, move.from());
  board.at(move.from()) = pawn;
  board.at(move.to()) = move.captured();
}

}  // namespace

Move makeMove(Board& board, Move move) {
  if (move.isSpecial()) return isLegal(board, move) ? makeSpecial(board, move) : NULL_MOVE;
  record(board, move);
  const Square from = move.from();
  const Square to = move.to();
  dropRights(board, from, to);
  dropEnPassant(board);
  if (move.isCapture()) capture(board, move.captured(), to);
  const Piece piece = board.at(from);
  const std::uint64_t key = pieceKey(piece, from) ^ pieceKey(piece, to);
  board.hash ^= key;
  if (piece.isPawn()) {
    board.phash ^= key;
    board.lastIrreversible = static_cast<std::uint16_t>(board.ply);
    if (move.isDoubleStep()) {
      const Color enemy = ~board.side;
      if (board.at(to - RIGHT).isPawnOf(enemy) || board.at(to + RIGHT).isPawnOf(enemy)) {
        board.epSquare = static_cast<std::uint8_t>(to.acrossDoubleStep().number());
        board.hash ^= enPassantKey(to.acrossDoubleStep());
      }
    }
  }
  shift(board, from, to);
  return finish(board, move);
}

void unmakeMove(Board& board, Move move, const SavedState& saved) {
  board.side = ~board.side;
  board.epSquare = saved.epSquare;
  board.rights = saved.rights;
  board.lastIrreversible = saved.lastIrreversible;
  board.phash = saved.phash;
  --board.ply;
  board.hash = board.hashHistory[board.ply];

  const Square from = move.from();
  const Square to = move.to();
  if (move.isCastling()) {
    const RookMove rook = castlingRook(move);
    shift(board, to, from);
    shift(board, rook.to, rook.from);
    return;
  }
  if (move.isPromotion()) {
    unmakePromotion(board, move);
  } else {
    shift(board, to, from);
    board.at(move.victimSquare()) = move.captured();
  }
  if (move.isCapture()) {
    toggleCaptured(board, move.captured(), move.victimSquare());
    board.material(~board.side) += Material::of(move.captured().type());
  }
}

void makeNullMove(Board& board) {
  record(board, NULL_MOVE);
  board.lastIrreversible = static_cast<std::uint16_t>(board.ply);
  dropEnPassant(board);
  board.side = ~board.side;
}

void unmakeNullMove(Board& board, const SavedState& saved) {
  board.side = ~board.side;
  board.epSquare = saved.epSquare;
  board.lastIrreversible = saved.lastIrreversible;
  --board.ply;
  board.hash = board.hashHistory[board.ply];
}

}  // namespace ombrin
