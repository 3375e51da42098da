#include "leaving_moves.h"

namespace bitbases {

namespace {

// What a move that leads there, possible in the positions of `mask`, brings the side that moves.
void add(Leaving& leaving, Squares legal, const ValueSets& theirs, Squares mask) {
  leaving.won |= theirs.lost & mask;
  leaving.saved |= legal & ~theirs.won & mask;
  leaving.movable |= legal & mask;
}

}  // namespace

LeavingMoves::LeavingMoves(const Material& material, const TableSource& source,
                           const FullTable* own)
    : pattern_(material.pattern()), own_(own) {
  for (int slot = 0; slot < pattern_.count; ++slot) {
    addNext(source, slot, NONE, QUEEN);
    if (pattern_.slots[slot].type != PAWN) continue;
    for (const Type type : {QUEEN, ROOK, BISHOP, KNIGHT}) {
      if (own != nullptr) addNext(source, NONE, slot, type);
      for (int captured = 0; captured < pattern_.count; ++captured) {
        if (pattern_.slots[captured].color == pattern_.slots[slot].color) continue;
        addNext(source, captured, slot, type);
      }
    }
  }
}

void LeavingMoves::addNext(const TableSource& source, int captured, int promoted, Type type) {
  Position position = pattern_;
  // The squares carry the slots through the sorting.
  for (int slot = 0; slot < position.count; ++slot) {
    position.slots[slot].square = static_cast<std::uint8_t>(slot);
  }
  if (promoted != NONE) position.slots[promoted].type = type;
  if (captured != NONE) position.remove(captured);
  sortMen(position);
  Next& next = next_[captured][promoted][type];
  for (int slot = 0; slot < position.count; ++slot) next.slots[slot] = position.slots[slot].square;
  const Color side =
      captured != NONE ? pattern_.slots[captured].color : 1 - pattern_.slots[promoted].color;
  if (position.count > 0) next.table = source(Material(position), side);
}

// The positions of the next table with the men on the squares of `frame`, of which those that are
// not there any more are left out.
LeavingMoves::Values LeavingMoves::values(const Next& next, const Position& frame,
                                          Color side) const {
  if (!next.table) {
    Position bare;
    bare.king = frame.king;
    return {legalSet(bare, side), {}};
  }
  Position position = next.table->material.pattern();
  position.king = frame.king;
  for (int slot = 0; slot < position.count; ++slot) {
    position.slots[slot].square = frame.slots[next.slots[slot]].square;
  }
  return {legalSet(position, side), next.table->at(position, side)};
}

Leaving LeavingMoves::captures(const Position& frame, Color side) const {
  Leaving leaving;
  addKingCaptures(frame, side, leaving);
  for (int slot = 0; slot < frame.count; ++slot) {
    if (frame.slots[slot].color == side) addCaptures(frame, slot, leaving);
  }
  return leaving;
}

Leaving LeavingMoves::all(const Position& frame, Color side) const {
  Leaving leaving = captures(frame, side);
  for (int slot = 0; slot < frame.count; ++slot) {
    const Man& man = frame.slots[slot];
    if (man.color == side && man.type == PAWN) addPushes(frame, slot, leaving);
  }
  return leaving;
}

void LeavingMoves::addKingCaptures(const Position& frame, Color side, Leaving& leaving) const {
  Position after = frame;
  for (int slot = 0; slot < frame.count; ++slot) {
    const Man& man = frame.slots[slot];
    if (man.color == side) continue;
    const Next& there = next(slot, NONE, QUEEN);
    if (side == 0) {
      if (distance(frame.king[0], man.square) != 1) continue;
      after.king[0] = man.square;
      const Values theirs = values(there, after, 1);
      add(leaving, theirs.legal, theirs.sets, ~Squares{0});
    } else {
      // All positions with the king beside the man lead to the same one.
      const Values theirs = values(there, frame, 0);
      const Squares square = bitOf(man.square);
      const auto all = [square](Squares squares) {
        return (squares & square) != 0 ? ~Squares{0} : 0;
      };
      add(leaving, all(theirs.legal), {all(theirs.sets.won), all(theirs.sets.lost)},
          kingSteps(man.square));
    }
  }
}

void LeavingMoves::addCaptures(const Position& frame, int slot, Leaving& leaving) const {
  const Man& man = frame.slots[slot];
  const Squares attacked = attacks(man, occupiedInFrame(frame));
  for (int captured = 0; captured < frame.count; ++captured) {
    const Man& target = frame.slots[captured];
    if (target.color == man.color || (attacked & bitOf(target.square)) == 0) continue;
    Position after = frame;
    after.slots[slot].square = target.square;
    if (man.type == PAWN) {
      addPawnMove(after, slot, captured, leaving);
    } else {
      const Values theirs = values(next(captured, NONE, QUEEN), after, 1 - man.color);
      add(leaving, theirs.legal, theirs.sets, ~between(man.square, target.square));
    }
  }
}

// The pawn has reached its square in `after`; `captured` is still there.
void LeavingMoves::addPawnMove(const Position& after, int slot, int captured,
                               Leaving& leaving) const {
  const Man& pawn = after.slots[slot];
  const Color theirSide = 1 - pawn.color;
  const bool isPromotion = relativeRank(pawn.color, pawn.square) == 7;
  if (isPromotion) {
    for (const Type type : {QUEEN, ROOK, BISHOP, KNIGHT}) {
      const Values theirs = values(next(captured, slot, type), after, theirSide);
      add(leaving, theirs.legal, theirs.sets, ~Squares{0});
    }
  } else if (captured != NONE) {
    const Values theirs = values(next(captured, NONE, QUEEN), after, theirSide);
    add(leaving, theirs.legal, theirs.sets, ~Squares{0});
  } else {
    add(leaving, legalSet(after, theirSide), own_->at(after, theirSide), ~Squares{0});
  }
}

void LeavingMoves::addPushes(const Position& frame, int slot, Leaving& leaving) const {
  const Man& pawn = frame.slots[slot];
  const Squares men = occupiedInFrame(frame);
  const Square one = pawn.square + upOf(pawn.color);
  if ((men & bitOf(one)) != 0) return;
  Position after = frame;
  after.slots[slot].square = static_cast<std::uint8_t>(one);
  addPawnMove(after, slot, NONE, leaving);
  if (relativeRank(pawn.color, pawn.square) != 1) return;
  const Square two = one + upOf(pawn.color);
  if ((men & bitOf(two)) != 0) return;
  after.slots[slot].square = static_cast<std::uint8_t>(two);
  const Values theirs = afterDoubleStep(after, slot);
  add(leaving, theirs.legal, theirs.sets, ~bitOf(one));
}

// The values of positions in which the pawn in `slot` has just made its double step.
LeavingMoves::Values LeavingMoves::afterDoubleStep(const Position& frame, int slot) const {
  const Man& target = frame.slots[slot];
  const Color mover = target.color;
  const Color side = 1 - mover;
  Values values{legalSet(frame, side), own_->at(frame, side)};
  Leaving passing;
  for (int other = 0; other < frame.count; ++other) {
    const Man& pawn = frame.slots[other];
    if (pawn.type != PAWN || pawn.color != side || rankOf(pawn.square) != rankOf(target.square) ||
        distance(pawn.square, target.square) != 1) {
      continue;
    }
    Position after = frame;
    after.slots[other].square = static_cast<std::uint8_t>(target.square - upOf(mover));
    const Values theirs = this->values(next(slot, NONE, QUEEN), after, mover);
    add(passing, theirs.legal, theirs.sets, ~Squares{0});
  }
  if (passing.movable == 0) return values;
  // Where nothing else is possible the capture is forced, even where it saves from a stalemate.
  const Squares drawn = values.legal & ~values.sets.won & ~values.sets.lost;
  const Squares forced = drawn & passing.movable & ~passing.saved;
  if (forced != 0) {
    const Squares still = forced & ~all(frame, side).movable;
    values.sets.lost |= still & ~movableSet(frame, side, still);
  }
  values.sets.won |= passing.won & values.legal;
  values.sets.lost &= ~passing.saved;
  return values;
}

}  // namespace bitbases
