#include "frame_sets.h"

namespace bitbases {

namespace {

// Every position with the men, the black king included, on squares of their own, and the kings
// apart.
Squares apartSet(const Position& frame) {
  Squares taken = bitOf(frame.king[0]);
  for (const Man& man : frame.men()) {
    if ((taken & bitOf(man.square)) != 0) return 0;
    taken |= bitOf(man.square);
  }
  return ~taken & ~kingSteps(frame.king[0]);
}

}  // namespace

Squares occupiedInFrame(const Position& frame) {
  Squares men = bitOf(frame.king[0]);
  for (const Man& man : frame.men()) men |= bitOf(man.square);
  return men;
}

Squares between(Square from, Square to) {
  return geometry_tables::BETWEEN[from][to];
}

Squares checkedSet(const Position& frame, Color side) {
  const Squares men = occupiedInFrame(frame);
  Squares checked = 0;
  for (const Man& man : frame.men()) {
    if (man.color == side) continue;
    if (side == 1) {
      checked |= attacks(man, men);
    } else if (isAttacking(man, frame.king[0], men)) {
      checked |= ~between(man.square, frame.king[0]);
    }
  }
  return checked;
}

Squares legalSet(const Position& frame, Color side) {
  const Squares apart = apartSet(frame);
  return apart == 0 ? 0 : apart & ~checkedSet(frame, 1 - side);
}

Squares movableSet(const Position& frame, Color side, Squares wanted) {
  const Squares men = occupiedInFrame(frame);
  Squares movable = side == 1 ? spread(legalSet(frame, 0)) : 0;
  Position next = frame;
  if (side == 0) {
    Squares targets = kingSteps(frame.king[0]) & ~men;
    while (targets != 0 && (wanted & ~movable) != 0) {
      next.king[0] = popSquare(targets);
      movable |= legalSet(next, 1);
    }
    next.king[0] = frame.king[0];
  }
  for (int slot = 0; slot < frame.count; ++slot) {
    const Man& man = frame.slots[slot];
    if (man.color != side || man.type == PAWN) continue;
    Squares targets = attacks(man, men) & ~men;
    while (targets != 0 && (wanted & ~movable) != 0) {
      const Square to = popSquare(targets);
      next.slots[slot].square = static_cast<std::uint8_t>(to);
      movable |= legalSet(next, 1 - side) & ~between(man.square, to);
    }
    next.slots[slot].square = man.square;
  }
  return wanted & movable;
}

}  // namespace bitbases
