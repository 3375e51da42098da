#include "board/plain_notation.h"

#include "board/attacks.h"

namespace ombrin {

namespace {

bool isFile(char c) {
  return c >= 'a' && c <= 'h';
}

bool isRank(char c) {
  return c >= '1' && c <= '8';
}

PieceType typeOf(char letter) {
  switch (letter) {
    case 'N':
      return KNIGHT;
    case 'B':
      return BISHOP;
    case 'R':
      return ROOK;
    case 'Q':
      return QUEEN;
    case 'K':
      return KING;
    default:
      return NO_PIECE_TYPE;
  }
}

// What stands between the piece's letter and the square. Negative: not given.
struct Origin {
  int file = -1;
  int rank = -1;

  bool admits(Square from) const {
    return (file < 0 || from.file() == file) && (rank < 0 || from.rank() == rank);
  }
};

// False when the text holds anything else.
bool readOrigin(std::string_view text, Origin& origin) {
  if (!text.empty() && isFile(text.front())) {
    origin.file = text.front() - 'a';
    text.remove_prefix(1);
  }
  if (!text.empty() && isRank(text.front())) {
    origin.rank = text.front() - '1';
    text.remove_prefix(1);
  }
  if (!text.empty() && text.front() == 'x') text.remove_prefix(1);
  return text.empty();
}

Move findPieceMove(const Board& board, PieceType type, const Origin& origin, Square to) {
  const Color us = board.side;
  if (!board.at(to).mayBeEnteredBy(us)) return NULL_MOVE;
  const Square king = board.kingSquare(us);
  const int kind = Piece(us, slotRun(type).first).kind();
  Move found;
  bool ambiguous = false;
  board.forEach(us, type, [&](Piece, Square from) {
    if (!origin.admits(from) || !reaches(board, kind, from, to)) return;
    if (type == KING ? isAttacked(board, ~us, to) : uncovers(board, king, from, to)) return;
    ambiguous = ambiguous || !found.isNull();
    found = Move(from, to, board.at(to));
  });
  return ambiguous ? NULL_MOVE : found;
}

Move findPawnStep(const Board& board, Square to) {
  const Color us = board.side;
  if (!board.at(to).isEmpty() || (board.hasEnPassant() && board.epSquare == to.number())) {
    return NULL_MOVE;
  }
  Square from = to - forward(us);
  std::uint32_t special = 0;
  if (board.at(from).isEmpty() && to.relativeRank(us) == 3) {
    from = from - forward(us);
    special = Move::DOUBLE_STEP;
  }
  if (!board.at(from).isPawnOf(us)) return NULL_MOVE;
  if (uncovers(board, board.kingSquare(us), from, to)) return NULL_MOVE;
  return {from, to, EMPTY, special};
}

Move findPawnCapture(const Board& board, int fromFile, Square to) {
  const Color us = board.side;
  const Square from = Square::at(fromFile, (to - forward(us)).rank());
  if (!board.at(to).isOf(~us) || !board.at(from).isPawnOf(us)) return NULL_MOVE;
  if ((board.at(from).kind() & attacksOver(to - from)) == 0) return NULL_MOVE;
  if (uncovers(board, board.kingSquare(us), from, to)) return NULL_MOVE;
  return {from, to, board.at(to)};
}

}  // namespace

Move findPlainMove(const Board& board, std::string_view text) {
  while (!text.empty() && std::string_view("+#!?").find(text.back()) != std::string_view::npos) {
    text.remove_suffix(1);
  }
  const std::size_t length = text.size();
  if (length < 2 || !isFile(text[length - 2]) || !isRank(text[length - 1])) return NULL_MOVE;
  if (board.lastMove().isCheck()) return NULL_MOVE;
  const Square to = Square::at(text[length - 2] - 'a', text[length - 1] - '1');
  text.remove_suffix(2);

  if (!text.empty()) {
    if (const PieceType type = typeOf(text.front()); type != NO_PIECE_TYPE) {
      Origin origin;
      if (!readOrigin(text.substr(1), origin)) return NULL_MOVE;
      return findPieceMove(board, type, origin, to);
    }
  }
  const int rank = to.relativeRank(board.side);
  if (rank == 0 || rank == 7) return NULL_MOVE;
  if (text.empty()) return findPawnStep(board, to);
  if (text.size() == 2 && isFile(text[0]) && text[1] == 'x') {
    return findPawnCapture(board, text[0] - 'a', to);
  }
  return NULL_MOVE;
}

}  // namespace ombrin
