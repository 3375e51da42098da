#include "board/display.h"

#include <string>

#include "board/fen.h"
#include "board/notation.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::string_view BORDER = "   +---+---+---+---+---+---+---+---+";

// The moves played, two to a line, the latest at the bottom; the caller asks line by line.
class MoveColumn {
 public:
  explicit MoveColumn(const Board& board)
      : board_(board), next_(board.ply < 28 ? 0 : (board.ply - 28 + 1) & ~1U) {}

  void print(std::FILE* stream) {
    if (board_.ply <= next_) return;
    ombrin::print(stream, "  %2i. %-6s", static_cast<int>((next_ + board_.droppedPlies) / 2 + 1),
                  text(next_).c_str());
    if (board_.ply > next_ + 1) {
      ombrin::print(stream, " %-6s", text(next_ + 1).c_str());
    } else {
      ombrin::print(stream, " ...");
    }
    next_ += 2;
  }

 private:
  std::string text(std::uint32_t ply) const { return moveToText(board_.moveHistory[ply]); }

  const Board& board_;
  std::uint32_t next_;
};

void printCell(std::FILE* stream, Piece piece, int mode) {
  if (mode > 0) {
    print(stream, "| %2x", static_cast<unsigned>(mode == 1 ? piece.kind() : piece.index()));
  } else if (piece.isEmpty()) {
    print(stream, "|   ");
  } else {
    print(stream, piece.color() == WHITE ? "|(%c)" : "|*%c*", piece.letter());
  }
}

void appendSurplus(std::string& text, char letter, int more) {
  if (more > 0) text.append(static_cast<std::size_t>(more), letter);
}

// What White has more of in upper case, then what Black has more of in lower case.
std::string imbalance(Material white, Material black) {
  std::string text;
  appendSurplus(text, 'Q', white.queens() - black.queens());
  appendSurplus(text, 'R', white.rooks() - black.rooks());
  appendSurplus(text, 'B', white.bishops() - black.bishops());
  appendSurplus(text, 'N', white.knights() - black.knights());
  appendSurplus(text, 'P', white.pawns() - black.pawns());
  appendSurplus(text, 'q', black.queens() - white.queens());
  appendSurplus(text, 'r', black.rooks() - white.rooks());
  appendSurplus(text, 'b', black.bishops() - white.bishops());
  appendSurplus(text, 'n', black.knights() - white.knights());
  appendSurplus(text, 'p', black.pawns() - white.pawns());
  return text;
}

void printMaterial(std::FILE* stream, const Board& board) {
  const int white = board.WhiteMaterial.total();
  const int black = board.BlackMaterial.total();
  print(stream, "  %i-%i=%i ", white, black, white - black);
  if (board.WhiteMaterial != board.BlackMaterial) {
    print(stream, " %s", imbalance(board.WhiteMaterial, board.BlackMaterial).c_str());
  }
}

}  // namespace

void printBoard(const Board& board, std::FILE* stream, int mode) {
  if (stream == nullptr) return;
  MoveColumn moves(board);
  print(stream, "\n%s\n", BORDER.data());
  for (int rank = 7; rank >= 0; --rank) {
    print(stream, " %i ", rank + 1);
    for (int file = 0; file < 8; ++file) printCell(stream, board.at(Square::at(file, rank)), mode);
    print(stream, "|");
    moves.print(stream);
    print(stream, "\n%s", BORDER.data());
    if (rank > 0) {
      moves.print(stream);
      print(stream, "\n");
    }
  }
  printMaterial(stream, board);
  print(stream, "\n     a   b   c   d   e   f   g   h\n\n");
  print(stream, "%s\n", writeFen(board).c_str());
  const auto high = [](std::uint64_t key) { return static_cast<std::uint32_t>(key >> 32); };
  const auto low = [](std::uint64_t key) { return static_cast<std::uint32_t>(key); };
  print(stream, " hash=%08x%08x\n", high(board.hash), low(board.hash));
  print(stream, "phash=%08x%08x\n", high(board.phash), low(board.phash));
}

}  // namespace ombrin
