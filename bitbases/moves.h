// The rules of the game, for positions without castling.
#pragma once

#include <array>
#include <span>

#include "geometry.h"
#include "position.h"

namespace bitbases {

inline constexpr int KING_SLOT = -1;
inline constexpr int NO_SLOT = -2;

struct Move {
  int slot;  // of the man that moves, or KING_SLOT
  Square to;
  int captured;  // slot, or NO_SLOT
  Type type;     // of the man after the move; another than before for a promotion
  bool isPromotion;
  bool isDoubleStep;

  // Does it stay within the material?
  bool isQuiet() const { return captured == NO_SLOT && !isPromotion; }
};

// A king and three queens have no more than 8 + 3 * 27.
class MoveList {
 public:
  void add(const Move& move) { moves_[static_cast<std::size_t>(count_++)] = move; }
  std::span<const Move> moves() const {
    return std::span(moves_).first(static_cast<std::size_t>(count_));
  }

 private:
  std::array<Move, 96> moves_;
  int count_ = 0;
};

Squares occupied(const Position& position);
bool isInCheck(const Position& position, Color color);

// May the position arise: kings apart, the side not to move not in check? Men must stand on squares
// of their own.
bool isLegal(const Position& position);

// All legal moves but captures en passant.
MoveList legalMoves(const Position& position);

// The captures among them.
MoveList legalCaptures(const Position& position);

// The position after the move; slots change when it captures.
Position after(const Position& position, const Move& move);

// What capturing the pawn in slot `doubleStepped`, which has just made its double step, leads to:
// at most two positions.
struct EnPassantCaptures {
  std::array<Position, 2> results;
  int count = 0;
};
EnPassantCaptures enPassantCaptures(const Position& position, int doubleStepped);

}  // namespace bitbases
