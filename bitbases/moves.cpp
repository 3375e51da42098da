#include "moves.h"

#include <algorithm>

namespace bitbases {

namespace {

// What one side attacks on a board with those men on it.
Squares attacksOf(const Position& position, Color color, Squares men) {
  Squares attacked = kingSteps(position.king[color]);
  for (const Man& man : position.men()) {
    if (man.color == color) attacked |= attacks(man, men);
  }
  return attacked;
}

// Does a man of the other side attack the king, when the men on the board are `men`? The man in
// slot `missing` has been captured.
bool isKingAttacked(const Position& position, Color color, Squares men, int missing) {
  for (int slot = 0; slot < position.count; ++slot) {
    const Man& man = position.slots[slot];
    if (man.color != color && slot != missing && isAttacking(man, position.king[color], men)) {
      return true;
    }
  }
  return false;
}

int slotOn(const Position& position, Square square) {
  for (int slot = 0; slot < position.count; ++slot) {
    if (position.slots[slot].square == square) return slot;
  }
  return NO_SLOT;
}

// The squares that the pawn may push to.
Squares pushes(const Man& pawn, Squares men) {
  const Square one = pawn.square + upOf(pawn.color);
  if ((men & bitOf(one)) != 0) return 0;
  const Square two = one + upOf(pawn.color);
  const bool mayDouble = relativeRank(pawn.color, pawn.square) == 1 && (men & bitOf(two)) == 0;
  return bitOf(one) | (mayDouble ? bitOf(two) : 0);
}

// The moves of one position, while they are found.
class Finder {
 public:
  explicit Finder(const Position& position)
      : position_(position), side_(position.side), men_(occupied(position)) {
    for (const Man& man : position.men()) {
      (man.color == side_ ? own_ : enemy_) |= bitOf(man.square);
      if (man.color != side_ && isAimedAt(man, position.king[side_])) mayExpose_ = true;
    }
    own_ |= bitOf(position.king[side_]);
  }

  Squares enemies() const { return enemy_; }

  // All moves, or those to `targets` only.
  MoveList find(Squares targets = ~Squares{0}) {
    wanted_ = targets;
    findKingMoves();
    for (int slot = 0; slot < position_.count; ++slot) {
      if (position_.slots[slot].color == side_) findMovesOf(slot);
    }
    return list_;
  }

 private:
  int capturedOn(Square square) const {
    return (enemy_ & bitOf(square)) != 0 ? slotOn(position_, square) : NO_SLOT;
  }

  void findKingMoves() {
    const Square king = position_.king[side_];
    Squares targets = kingSteps(king) & ~own_ & wanted_;
    if (targets == 0) return;
    // The king does not shield the squares behind it.
    const Squares attacked = attacksOf(position_, 1 - side_, men_ ^ bitOf(king));
    targets &= ~attacked;
    while (targets != 0) {
      const Square to = popSquare(targets);
      list_.add({KING_SLOT, to, capturedOn(to), QUEEN, false, false});
    }
  }

  void findMovesOf(int slot) {
    const Man& man = position_.slots[slot];
    Squares targets = man.type == PAWN
                          ? pushes(man, men_) | (pawnAttacks(side_, man.square) & enemy_)
                          : attacks(man, men_) & ~own_;
    // A king can be captured only in positions that cannot arise.
    targets &= wanted_ & ~bitOf(position_.king[1 - side_]);
    while (targets != 0) {
      const Square to = popSquare(targets);
      const int captured = capturedOn(to);
      if (mayExpose_) {
        const Squares men = (men_ ^ bitOf(man.square)) | bitOf(to);
        if (isKingAttacked(position_, side_, men, captured)) continue;
      }
      if (man.type != PAWN) {
        list_.add({slot, to, captured, man.type, false, false});
      } else if (relativeRank(side_, to) == 7) {
        for (const Type type : {QUEEN, ROOK, BISHOP, KNIGHT}) {
          list_.add({slot, to, captured, type, true, false});
        }
      } else {
        list_.add({slot, to, captured, PAWN, false, distance(man.square, to) == 2});
      }
    }
  }

  const Position& position_;
  Color side_;
  Squares men_;
  Squares own_ = 0;
  Squares enemy_ = 0;
  Squares wanted_ = 0;
  // Can a man other than the king expose or leave its king in check at all?
  bool mayExpose_ = false;
  MoveList list_;
};

}  // namespace

Squares occupied(const Position& position) {
  Squares men = bitOf(position.king[0]) | bitOf(position.king[1]);
  for (const Man& man : position.men()) men |= bitOf(man.square);
  return men;
}

bool isInCheck(const Position& position, Color color) {
  return isKingAttacked(position, color, occupied(position), NO_SLOT);
}

bool isLegal(const Position& position) {
  return distance(position.king[0], position.king[1]) > 1 &&
         !isInCheck(position, 1 - position.side);
}

MoveList legalMoves(const Position& position) {
  return Finder(position).find();
}

MoveList legalCaptures(const Position& position) {
  Finder finder(position);
  return finder.find(finder.enemies());
}

Position after(const Position& position, const Move& move) {
  Position next = position;
  next.side = 1 - position.side;
  if (move.slot == KING_SLOT) {
    next.king[position.side] = move.to;
  } else {
    next.slots[move.slot].square = static_cast<std::uint8_t>(move.to);
    next.slots[move.slot].type = move.type;
  }
  if (move.captured != NO_SLOT) next.remove(move.captured);
  return next;
}

EnPassantCaptures enPassantCaptures(const Position& position, int doubleStepped) {
  EnPassantCaptures captures;
  const Man& target = position.slots[doubleStepped];
  const Color side = position.side;
  for (int slot = 0; slot < position.count; ++slot) {
    const Man& pawn = position.slots[slot];
    if (pawn.type != PAWN || pawn.color != side || rankOf(pawn.square) != rankOf(target.square) ||
        distance(pawn.square, target.square) != 1) {
      continue;
    }
    Position next = position;
    next.side = 1 - side;
    next.slots[slot].square = static_cast<std::uint8_t>(target.square + upOf(side));
    next.remove(doubleStepped);
    if (!isInCheck(next, side)) captures.results[captures.count++] = next;
  }
  return captures;
}

}  // namespace bitbases
