#include "board/fen.h"

#include <array>
#include <optional>

#include "board/attacks.h"
#include "board/notation.h"
#include "board/zobrist.h"
#include "util/log.h"

namespace ombrin {

namespace {

constexpr LogChannel CHANNEL{"fen"};

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr char rowDigit(int rank) {
  return static_cast<char>('1' + rank);
}

// The type and colour that a FEN letter stands for.
struct Man {
  Color color;
  PieceType type;
};
std::optional<Man> manOf(char letter) {
  for (const PieceType type : PIECE_TYPES) {
    if (letter == PIECE_LETTERS[type]) return Man{BLACK, type};
    if (letter == upperLetter(type)) return Man{WHITE, type};
  }
  return std::nullopt;
}

// More men of one type than a side starts with.
int promotedMen(Material material) {
  const auto above = [](int count, int start) { return count > start ? count - start : 0; };
  return above(material.knights(), 2) + above(material.bishops(), 2) + above(material.rooks(), 2) +
         above(material.queens(), 1);
}

// Reads one FEN into one board, field by field. A field that the text does not reach keeps the
// value of a cleared board.
class FenReader {
 public:
  FenReader(Board& board, std::string_view text) : board_(board), rest_(text) {}

  FenResult read() {
    readFields();
    return {std::move(error_)};
  }

 private:
  bool refuse(const char* why) {
    error_ = why;
    return false;
  }
  bool refuse(const char* why, char where) {
    refuse(why);
    error_ += where;
    return false;
  }

  bool readFields() {
    board_.clear();
    if (!readPieces() || !checkMen()) return false;
    if (skipBlanks() && !readSide()) return false;
    if (skipBlanks()) readRights();
    board_.hash ^= castleKey(board_.rights);
    if (skipBlanks()) readEnPassant();
    if (skipBlanks()) readNumber("", "illegal char in fifty: %c\n");
    if (skipBlanks()) readNumber(";", "illegal char in move nr: %c\n");
    if (skipBlanks()) {
      logInfo(CHANNEL, "fenfields: %.*s\n", static_cast<int>(rest_.size()), rest_.data());
    }
    return readCheck();
  }

  // False at the end of the text.
  bool skipBlanks() {
    while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
    return !rest_.empty();
  }
  bool inField() const { return !rest_.empty() && rest_.front() != ' '; }
  char take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  bool readPieces() {
    int rank = 7;
    int file = 0;
    while (inField()) {
      const char c = take();
      if (rank < 0) return refuse("Illegal FEN: too many rows");
      if (c == '/') {
        --rank;
        file = 0;
        continue;
      }
      const std::optional<Man> man = manOf(c);
      if (!man && (c < '1' || c > '8')) {
        return refuse("invalid char in fen: ", c);
      }
      const int files = man ? 1 : c - '0';
      if (file + files > 8) {
        return refuse("Illegal FEN: too many files in row ", rowDigit(rank));
      }
      if (man && !addMan(*man, Square::at(file, rank))) return false;
      file += files;
    }
    return true;
  }

  bool addMan(Man man, Square square) {
    if (man.type == PAWN && (square.rank() == 0 || square.rank() == 7)) {
      return refuse("Illegal FEN: pawn on row ", rowDigit(square.rank()));
    }
    const SlotRun run = slotRun(man.type);
    if (board_.pieceSquare[Piece(man.color, run.terminator - 1).index()] != Board::FREE) {
      return refuse("Illegal FEN: too many men: ", Piece(man.color, run.first).letter());
    }
    board_.addPiece(man.color, man.type, square);
    return true;
  }

  bool checkMen() {
    for (const Color color : {WHITE, BLACK}) {
      if (!board_.kingSquare(color).isOnBoard()) {
        return refuse(color == WHITE ? "Illegal FEN: no White king" : "Illegal FEN: no Black king");
      }
      const Material material = board_.material(color);
      if (material.pawns() + promotedMen(material) > 8) {
        return refuse(color == WHITE ? "Illegal FEN: too many White men promoted"
                                     : "Illegal FEN: too many Black men promoted");
      }
    }
    return true;
  }

  bool readSide() {
    const char c = take();
    if (c != 'w' && c != 'b') {
      return refuse("fen: invalid stm: ", c);
    }
    board_.side = c == 'w' ? WHITE : BLACK;
    return true;
  }

  void readRights() {
    struct Home {
      char letter;
      CastlingRight right;
      Color color;
      Square king;
      Square rook;
    };
    static constexpr std::array<Home, 4> HOMES = {{{'K', WHITE_KING_SIDE, WHITE, E1, H1},
                                                   {'Q', WHITE_QUEEN_SIDE, WHITE, E1, A1},
                                                   {'k', BLACK_KING_SIDE, BLACK, E8, H8},
                                                   {'q', BLACK_QUEEN_SIDE, BLACK, E8, A8}}};
    while (inField()) {
      const char c = take();
      if (c == '-') return;
      const Home* home = nullptr;
      for (const Home& candidate : HOMES) {
        if (candidate.letter == c) home = &candidate;
      }
      if (home == nullptr) {
        logWarn(CHANNEL, "setFen(): illegal castling char: %c\n", c);
        continue;
      }
      const Piece rook = board_.at(home->rook);
      if (board_.kingSquare(home->color) == home->king && rook.isOf(home->color) &&
          rook.type() == ROOK) {
        board_.rights = static_cast<std::uint8_t>(board_.rights | home->right);
      } else {
        logWarn(CHANNEL, "castling %c invalid\n", c);
      }
    }
  }

  void readEnPassant() {
    const char fileLetter = take();
    if (fileLetter == '-') return;
    if (rest_.empty()) return;
    const char rankDigit = take();
    const int file = fileLetter - 'a';
    const int rank = rankDigit - '1';
    const int value = rank * 16 + file;
    if (file < 0 || file > 7 || rank < 0 || rank > 7 || value < 1) {
      logWarn(CHANNEL, "FEN: invalid ep square: %x\n", static_cast<unsigned>(value));
      return;
    }
    const Square square(value);
    if (rank == 2) {
      board_.rootMove = Move(square - UP, square + UP, EMPTY, Move::DOUBLE_STEP);
    } else if (rank == 5) {
      board_.rootMove = Move(square + UP, square - UP, EMPTY, Move::DOUBLE_STEP);
    } else {
      logWarn(CHANNEL, "setFen() ep square on wrong row: %i\n", rank);
    }
    board_.epSquare = static_cast<std::uint8_t>(value);
    board_.hash ^= enPassantKey(square);
  }

  // A count that the engine does not keep: it ends at a blank, a "-" or one of `alsoEnds`.
  void readNumber(std::string_view alsoEnds, const char* warning) {
    bool isZero = true;
    bool warned = false;
    while (inField()) {
      const char c = take();
      if (c == '-' || alsoEnds.find(c) != std::string_view::npos) return;
      if (isDigit(c)) {
        isZero = isZero && c == '0';
      } else if (!isZero && !warned) {
        warn(warning, c);
        warned = true;
      }
    }
  }
  static void warn(const char* warning, char c) {
    std::string text(warning);
    text.replace(text.find("%c"), 2, 1, c);
    logWarn(CHANNEL, "%s", text.c_str());
  }

  // Who gives check, told as the move that must have been played last.
  bool readCheck() {
    const Color us = board_.side;
    if (isAttacked(board_, us, board_.kingSquare(~us)))
      return refuse("Illegal FEN: side not to move is in check");
    const Square king = board_.kingSquare(us);
    std::array<Square, 2> checkers;
    int count = 0;
    for (const PieceType type : PIECE_TYPES) {
      board_.forEach(~us, type, [&](Piece piece, Square from) {
        if (!attacks(board_, piece.kind(), from, king)) return;
        if (count < 2) checkers[count] = from;
        ++count;
      });
    }
    if (count > 2) return refuse("Illegal FEN: triple check?!");
    const Move doubleStep = board_.rootMove;
    board_.rootMove = NULL_MOVE;
    if (count == 0) return true;
    if (count == 2) {
      if (!setDoubleCheck(king, checkers[0], checkers[1])) return false;
    } else {
      board_.rootMove = checkingMove(king, checkers[0], doubleStep);
    }
    logInfo(CHANNEL, "fen: pseudo last move=%s\n", moveToText(board_.rootMove).c_str());
    return true;
  }

  bool setDoubleCheck(Square king, Square slider, Square other) {
    if (board_.at(other).isSlider()) {
      if (board_.at(slider).isSlider())
        return refuse("Illegal FEN: double slider attack not possible");
      std::swap(slider, other);
    }
    board_.rootMove =
        Move(slider + stepAlong(king - slider), other).with(Move::CHECK | Move::DISCOVERED_CHECK);
    return true;
  }

  // A double step that the en-passant square tells of is the last move if it can have given the
  // check; evasions rely on that.
  Move checkingMove(Square king, Square checker, Move doubleStep) const {
    if (doubleStep) {
      if (board_.at(checker).isPawn() && doubleStep.to() == checker) {
        return doubleStep.with(Move::CHECK);
      }
      const Delta step = stepAlong(checker - king);
      if (board_.at(checker).isSlider() && isLine(doubleStep.from() - king) &&
          stepAlong(doubleStep.from() - king) == step &&
          firstOnLine(board_, king, step) == checker) {
        return doubleStep.with(Move::DISCOVERED_CHECK);
      }
    }
    return Move(checker, checker).with(Move::CHECK);
  }

  Board& board_;
  std::string_view rest_;
  std::string error_;
};

std::string castlingText(int rights) {
  if (rights == 0) return "-";
  std::string text;
  if ((rights & WHITE_KING_SIDE) != 0) text += 'K';
  if ((rights & WHITE_QUEEN_SIDE) != 0) text += 'Q';
  if ((rights & BLACK_KING_SIDE) != 0) text += 'k';
  if ((rights & BLACK_QUEEN_SIDE) != 0) text += 'q';
  return text;
}

}  // namespace

FenResult setFen(Board& board, std::string_view text) {
  return FenReader(board, text).read();
}

std::string writeFen(const Board& board) {
  std::string text;
  for (int rank = 7; rank >= 0; --rank) {
    int empty = 0;
    for (int file = 0; file < 8; ++file) {
      const Piece piece = board.at(Square::at(file, rank));
      if (piece.isEmpty()) {
        ++empty;
        continue;
      }
      if (empty > 0) text += static_cast<char>('0' + empty);
      empty = 0;
      text += piece.letter();
    }
    if (empty > 0) text += static_cast<char>('0' + empty);
    if (rank > 0) text += '/';
  }
  text += board.side == WHITE ? " w " : " b ";
  text += castlingText(board.rights);
  text += ' ';
  text += board.hasEnPassant() ? Square(board.epSquare).text() : "-";
  return text + " " + std::to_string(board.reversiblePlies()) + " " +
         std::to_string(board.gamePly());
}

}  // namespace ombrin
