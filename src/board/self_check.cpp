#include "board/self_check.h"

#include <cstdlib>

#include "board/display.h"
#include "board/notation.h"
#include "board/zobrist.h"
#include "util/print.h"

namespace ombrin {

namespace {

void showWithMove(const Board& board, Move move) {
  printBoard(board, stdout);
  print(stdout, "%s", moveToText(move).c_str());
}

[[noreturn]] void stop() {
  std::fflush(nullptr);
  std::abort();
}

// What is wrong with the castling rights; null when nothing is.
const char* findBrokenRight(const Board& board) {
  struct Requirement {
    int right;
    Color color;
    Square king;
    Square rook;
    const char* kingMissing;
    const char* rookMissing;
  };
  static constexpr std::array<Requirement, 4> REQUIREMENTS = {{
      {WHITE_KING_SIDE, WHITE, E1, H1, "WK: king!=e1\n", "WK: rook!=h1\n"},
      {WHITE_QUEEN_SIDE, WHITE, E1, A1, "WQ: king!=e1\n", "WQ: rook!=a1\n"},
      {BLACK_KING_SIDE, BLACK, E8, H8, "BK: king!=e8\n", "BK: rook!=h8\n"},
      {BLACK_QUEEN_SIDE, BLACK, E8, A8, "BQ: king!=e8\n", "BQ: rook!=a8\n"},
  }};
  const char* broken = nullptr;
  for (const Requirement& needed : REQUIREMENTS) {
    if ((board.rights & needed.right) == 0) continue;
    if (board.kingSquare(needed.color) != needed.king) broken = needed.kingMissing;
    const Piece rook = board.at(needed.rook);
    if (!rook.isOf(needed.color) || rook.type() != ROOK) broken = needed.rookMissing;
  }
  return broken;
}

void checkPieceList(const Board& board, Color color, PieceType type, const char* label, Move move) {
  board.forEach(color, type, [&](Piece piece, Square square) {
    const Piece found = board.at(square);
    const int foundColor = found.index() & 192;
    if (found == piece && foundColor == colorBit(color)) return;
    showWithMove(board, move);
    print(stdout, " %s wrong %s: sq=%x, col=%x, i=%x, ix=%x=%x\n", label,
          found != piece ? "index" : "color", static_cast<unsigned>(square.number()),
          static_cast<unsigned>(foundColor), static_cast<unsigned>(color),
          static_cast<unsigned>(found.index()), static_cast<unsigned>(piece.index()));
    stop();
  });
}

void printKey(const char* name, std::uint64_t key) {
  print(stdout, "%s: %08x%08x\n", name, static_cast<std::uint32_t>(key >> 32),
        static_cast<std::uint32_t>(key));
}

void checkHash(const Board& board, const char* label, Move move) {
  const std::uint64_t real = board.computeHash();
  if (real == board.hash) return;
  showWithMove(board, move);
  const std::uint64_t current = castleKey(board.rights);
  const std::uint64_t every = castleKey(1) | castleKey(2) | castleKey(4) | castleKey(8);
  print(stdout, ": hash not ok: %s\n", label);
  printKey("real ", real);
  printKey("board", board.hash);
  printKey("delta", real ^ board.hash);
  printKey("chash", current);
  printKey("vhash", every);
  printKey("xhash", every ^ current);
  print(stdout, "rites=%i\n", board.rights);
  stop();
}

}  // namespace

void checkBoard(const Board& board, const char* label, Move move) {
  if (const char* broken = findBrokenRight(board)) {
    showWithMove(board, move);
    print(stdout, "rights=%i, from=%x, to=%x\n", board.rights,
          static_cast<unsigned>(move.from().number()), static_cast<unsigned>(move.to().number()));
    print(stdout, "%s: %s \n", label, broken);
    stop();
  }
  for (const Color color : {WHITE, BLACK}) {
    for (const PieceType type : PIECE_TYPES) checkPieceList(board, color, type, label, move);
  }
  checkHash(board, label, move);
  const Material white = board.computeMaterial(WHITE);
  if (white != board.WhiteMaterial) {
    showWithMove(board, move);
    print(stdout, "%s: WhiteMaterial not ok: %x!=%x\n", label, board.WhiteMaterial.word(),
          white.word());
    stop();
  }
  const Material black = board.computeMaterial(BLACK);
  if (black != board.BlackMaterial) {
    print(stdout, "%s: BlackMaterial not ok: %x!=%x\n", label, board.BlackMaterial.word(),
          black.word());
    stop();
  }
}

}  // namespace ombrin
