#include "book/game_rules.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace ombrin {

namespace {

// What programs write into the tag Variant of a game by the usual rules, in lower case.
constexpr std::array<std::string_view, 6> USUAL_RULES = {"",      "standard", "normal",
                                                         "chess", "regular",  "from position"};

// The third field.
std::string_view castlingField(std::string_view fen) {
  for (int field = 0; field < 2; ++field) {
    fen.remove_prefix(std::min(fen.find(' '), fen.size()));
    fen.remove_prefix(std::min(fen.find_first_not_of(' '), fen.size()));
  }
  return fen.substr(0, fen.find(' '));
}

struct Right {
  char letter;
  CastlingRight right;
  Color color;
  Delta direction;  // from the king to the rook
};
constexpr std::array<Right, 4> RIGHTS = {{{'K', WHITE_KING_SIDE, WHITE, RIGHT},
                                          {'Q', WHITE_QUEEN_SIDE, WHITE, -RIGHT},
                                          {'k', BLACK_KING_SIDE, BLACK, RIGHT},
                                          {'q', BLACK_QUEEN_SIDE, BLACK, -RIGHT}}};

// Could the king castle with a rook on that side by the rules of other variants?
bool hasRookAnywhere(const Board& board, const Right& right) {
  const Square king = board.kingSquare(right.color);
  if (king.relativeRank(right.color) != 0) return false;
  for (Square square = king + right.direction; square.isOnBoard(); square += right.direction) {
    const Piece piece = board.at(square);
    if (piece.isOf(right.color) && piece.type() == ROOK) return true;
  }
  return false;
}

}  // namespace

bool hasUsualRules(const PgnGame& game) {
  std::string lower(game.variant);
  std::ranges::transform(lower, lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return std::ranges::find(USUAL_RULES, lower) != USUAL_RULES.end();
}

bool hasOtherCastling(std::string_view fen, const Board& board) {
  const std::string_view field = castlingField(fen);
  return std::ranges::any_of(field, [&board](char letter) {
    const auto* const right = std::ranges::find(RIGHTS, letter, &Right::letter);
    if (right == RIGHTS.end()) return letter >= 'A';  // the name of a rook's file
    return (board.rights & right->right) == 0 && hasRookAnywhere(board, *right);
  });
}

}  // namespace ombrin
