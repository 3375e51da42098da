#include "board/notation.h"

#include <optional>

#include "board/make_move.h"
#include "board/move_generation.h"
#include "util/print.h"

namespace ombrin {

namespace {

// What a move's text says, as far as it says it.
struct MoveDescription {
  std::optional<int> toFile;
  std::optional<int> toRank;
  std::optional<int> fromFile;
  std::optional<int> fromRank;
  char piece = 0;      // upper-case letter of the moving piece
  char promotion = 0;  // and of the piece promoted to
  int castlingMarks = 0;
};

bool isSkipped(char c) {
  return std::string_view("\t\n\r !#+-=?x").find(c) != std::string_view::npos;
}

bool isBishopPromotion(std::string_view text, std::size_t index) {
  return index + 1 == text.size() && text.size() >= 5 && text[0] >= 'a' && text[0] <= 'h';
}

// Reads the text from its last character to its first, so that the destination comes before the
// origin. Nothing when a character belongs to no move.
std::optional<MoveDescription> scan(std::string_view text) {
  MoveDescription found;
  for (std::size_t index = text.size(); index-- > 0;) {
    const char c = text[index];
    if (c == 'b' && isBishopPromotion(text, index)) {
      found.promotion = 'B';
      found.piece = 'P';
    } else if (c >= 'a' && c <= 'h') {
      (found.toFile ? found.fromFile : found.toFile) = c - 'a';
    } else if (c >= '1' && c <= '8') {
      (found.toRank ? found.fromRank : found.toRank) = c - '1';
    } else if (std::string_view("NBRQnqr").find(c) != std::string_view::npos) {
      const char letter = c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c;
      if (found.toFile) {
        found.piece = letter;
      } else {
        found.promotion = letter;
        found.piece = 'P';
      }
    } else if (c == 'K' || c == 'P') {
      found.piece = c;
    } else if (c == 'O' || c == 'o') {
      ++found.castlingMarks;
    } else if (!isSkipped(c)) {
      print(stdout, "illegal char in move %.*s: %i\n", static_cast<int>(text.size()), text.data(),
            static_cast<unsigned char>(c));
      return std::nullopt;
    }
  }
  return found;
}

// Supplies the piece that the notation leaves out. False when the text says too little.
bool complete(MoveDescription& move) {
  if (move.piece != 0) return move.toFile && move.toRank;
  if (move.castlingMarks != 0) {
    if (move.castlingMarks != 2 && move.castlingMarks != 3) return false;
    move.piece = 'K';
    move.toFile = move.castlingMarks == 2 ? 6 : 2;
    return true;
  }
  if (move.fromFile && move.fromRank && move.toFile && move.toRank) return true;
  move.piece = 'P';
  return move.toFile && (move.toRank || move.fromFile);
}

bool matches(const Board& board, Move move, const MoveDescription& text) {
  const auto differs = [](const std::optional<int>& known, int value) {
    return known && *known != value;
  };
  if (text.piece != 0 && upperLetter(board.at(move.from()).type()) != text.piece) return false;
  if (move.isPromotion() &&
      upperLetter(move.promotion()) != (text.promotion != 0 ? text.promotion : 'Q')) {
    return false;
  }
  if (differs(text.toFile, move.to().file()) || differs(text.toRank, move.to().rank()) ||
      differs(text.fromFile, move.from().file()) || differs(text.fromRank, move.from().rank())) {
    return false;
  }
  return text.castlingMarks == 0 || move.isCastling();
}

// The legal move as makeMove returns it.
Move withCheckFlags(const Board& board, Move move) {
  Board after;
  after.copyFrom(board);
  return makeMove(after, move);
}

}  // namespace

std::string moveToText(Move move) {
  if (move.isNull()) return "%";
  if (move.isCastling()) return move.to().file() <= 3 ? "O-O-O" : "O-O";
  std::string text = move.from().text();
  if (move.isCapture()) text += 'x';
  text += move.to().text();
  if (move.isPromotion()) {
    text += '=';
    text += upperLetter(move.promotion());
  }
  if (move.givesDirectCheck()) text += '+';
  if (move.givesDiscoveredCheck()) text += '+';
  return text;
}

std::string moveToCoordinates(Move move) {
  if (move.isNull()) return "0000";
  std::string text = move.from().text() + move.to().text();
  if (move.isPromotion()) text += PIECE_LETTERS[move.promotion()];
  return text;
}

Move parseMove(const Board& board, std::string_view text) {
  if (text.empty() || text[0] == '%') return NULL_MOVE;
  std::optional<MoveDescription> description = scan(text);
  if (!description || !complete(*description)) return NULL_MOVE;

  Move found;
  for (const Move move : pseudoLegalMoves(board, board.lastMove())) {
    if (!matches(board, move, *description) || !isLegal(board, move)) continue;
    if (found) {
      print(stderr, "ambiguous move: %s _and_ %s\n",
            moveToText(withCheckFlags(board, found)).c_str(),
            moveToText(withCheckFlags(board, move)).c_str());
      return NULL_MOVE;
    }
    found = move;
  }
  return found ? withCheckFlags(board, found) : NULL_MOVE;
}

}  // namespace ombrin
