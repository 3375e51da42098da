#include "solver.h"

#include <algorithm>
#include <atomic>

#include "outcome.h"
#include "parallel.h"

namespace bitbases {

namespace {

Square reflected(Square square) {
  return fileOf(square) * 8 + rankOf(square);
}

// Reflecting in the diagonal a1-h8 changes nothing, unless like men change places. Such a position
// has its moves in pairs that lead to reflections of each other, and is reached by pairs of moves
// from reflections of each other; each pair must count once on both sides.
bool isSymmetric(const Position& position) {
  const auto hasReflection = [&](const Man& man) {
    return std::ranges::any_of(position.men(), [&](const Man& other) {
      return other.square == reflected(man.square) && other.type == man.type &&
             other.color == man.color;
    });
  };
  return !position.hasPawns() && position.king[0] == reflected(position.king[0]) &&
         position.king[1] == reflected(position.king[1]) &&
         std::ranges::all_of(position.men(), hasReflection);
}

// Is a man's way between two squares the one that counts of its pair? On the diagonal it has no
// partner.
bool isCounted(Square here, Square there) {
  const Square decisive = here != reflected(here) ? here : there;
  return rankOf(decisive) <= fileOf(decisive);
}

}  // namespace

Solver::Solver(const Material& material, const TableSet& tables, int threads)
    : layout_(material),
      tables_(tables),
      threads_(threads),
      states_(layout_.size()),
      hasNews_((layout_.size() + BLOCK - 1) / BLOCK) {}

std::vector<std::uint8_t> Solver::solve(const std::function<void(double)>& report) {
  constexpr int STAGES = 20;
  const std::uint64_t stage = (states_.size() / STAGES / BLOCK + 1) * BLOCK;
  for (std::uint64_t begin = 0; begin < states_.size(); begin += stage) {
    report(static_cast<double>(begin) / static_cast<double>(states_.size()));
    forRanges(std::min(stage, states_.size() - begin), BLOCK, threads_,
              [&](std::uint64_t from, std::uint64_t to) { classify(begin + from, begin + to); });
  }
  for (int passes = 1; pass(); ++passes) report(passes);
  for (std::uint8_t& state : states_) state = state == WON ? WIN : state == LOST ? LOSS : DRAW;
  return std::move(states_);
}

void Solver::classify(std::uint64_t begin, std::uint64_t end) {
  for (std::uint64_t index = begin; index < end; ++index) {
    const Position position = layout_.position(index);
    if (!layout_.isNumbered(position, index) || !isLegal(position)) {
      states_[index] = IMPOSSIBLE;
      continue;
    }
    const std::uint8_t state = firstState(position);
    states_[index] = state;
    if (state == NEWLY_WON || state == NEWLY_LOST) hasNews_[index / BLOCK] = 1;
  }
}

// What the move leads to, for the side to move there, as far as the tables at hand tell; nothing
// when it leads to another position of this table.
std::optional<Value> Solver::decidedValue(const Position& position, const Move& move) const {
  if (!move.isQuiet()) return tables_.value(after(position, move));
  if (!move.isDoubleStep) return std::nullopt;
  const Position next = after(position, move);
  const Value value = withEnPassant(next, DRAW, enPassantValue(tables_, next, move.slot));
  // A draw by capturing en passant decides nothing: their other moves may be better.
  if (value == DRAW) return std::nullopt;
  return value;
}

std::uint8_t Solver::firstState(const Position& position) const {
  const MoveList list = legalMoves(position);
  if (list.moves().empty()) return isInCheck(position, position.side) ? NEWLY_LOST : HAS_DRAW;
  const bool symmetric = isSymmetric(position);
  bool hasDraw = false;
  std::uint8_t count = 0;
  for (const Move& move : list.moves()) {
    const std::optional<Value> theirs = decidedValue(position, move);
    if (!theirs) {
      if (!symmetric || isCounted(originOf(position, move), move.to)) ++count;
      continue;
    }
    if (*theirs == LOSS) return NEWLY_WON;
    if (*theirs == DRAW) hasDraw = true;
  }
  return hasDraw ? HAS_DRAW : count == 0 ? NEWLY_LOST : count;
}

bool Solver::pass() {
  std::atomic<bool> found = false;
  forRanges(hasNews_.size(), 1, threads_, [&](std::uint64_t block, std::uint64_t) {
    // Taken back before the states are read, so that news of others meanwhile is seen now or in
    // the next pass.
    if (std::atomic_ref(hasNews_[block]).exchange(0, std::memory_order_acquire) == 0) return;
    found.store(true, std::memory_order_relaxed);
    const std::uint64_t end = std::min((block + 1) * BLOCK, layout_.size());
    for (std::uint64_t index = block * BLOCK; index < end; ++index) {
      // Only the block's visitor changes a state that is decided.
      std::atomic_ref state(states_[index]);
      const std::uint8_t known = state.load(std::memory_order_relaxed);
      if (known != NEWLY_WON && known != NEWLY_LOST) continue;
      state.store(known == NEWLY_WON ? WON : LOST, std::memory_order_relaxed);
      visitPredecessors(layout_.position(index), known == NEWLY_LOST);
    }
  });
  return found.load(std::memory_order_relaxed);
}

void Solver::visitPredecessors(const Position& position, bool isLost) {
  const Color mover = 1 - position.side;
  const Squares men = occupied(position);
  const bool symmetric = isSymmetric(position);
  Position predecessor = position;
  predecessor.side = mover;
  const auto visit = [&](Squares origins, auto& square) {
    const auto here = square;
    while (origins != 0) {
      const Square origin = popSquare(origins);
      if (symmetric && !isCounted(here, origin)) continue;
      square = static_cast<std::remove_cvref_t<decltype(square)>>(origin);
      inform(predecessor, isLost);
    }
    square = here;
  };
  const Square king = position.king[mover];
  visit(kingSteps(king) & ~men & ~kingSteps(position.king[position.side]), predecessor.king[mover]);
  for (int slot = 0; slot < position.count; ++slot) {
    const Man& man = position.slots[slot];
    if (man.color != mover) continue;
    if (man.type == PAWN) {
      visitPawnPredecessors(position, slot, isLost);
    } else {
      visit(attacks(man, men) & ~men, predecessor.slots[slot].square);
    }
  }
}

void Solver::visitPawnPredecessors(const Position& position, int slot, bool isLost) {
  const Color mover = 1 - position.side;
  const Squares men = occupied(position);
  const Square here = position.slots[slot].square;
  const Square one = here - upOf(mover);
  if (relativeRank(mover, one) == 0 || (men & bitOf(one)) != 0) return;
  Position predecessor = position;
  predecessor.side = mover;
  predecessor.slots[slot].square = static_cast<std::uint8_t>(one);
  inform(predecessor, isLost);

  const Square two = one - upOf(mover);
  if (relativeRank(mover, two) != 1 || (men & bitOf(two)) != 0) return;
  // firstState() has dealt with a winning capture, and one that draws saves what is lost.
  const std::optional<Value> capture = enPassantValue(tables_, position, slot);
  if (capture == WIN || (capture == DRAW && isLost)) return;
  predecessor.slots[slot].square = static_cast<std::uint8_t>(two);
  inform(predecessor, isLost);
}

// A move of the predecessor has been found to win, or to lose.
void Solver::inform(const Position& predecessor, bool isLost) {
  const std::uint64_t index = layout_.index(predecessor);
  std::atomic_ref state(states_[index]);
  std::uint8_t known = state.load(std::memory_order_relaxed);
  std::uint8_t next;
  do {
    if (known > HAS_DRAW || (!isLost && known == HAS_DRAW)) return;
    next = isLost ? NEWLY_WON : known == 1 ? NEWLY_LOST : static_cast<std::uint8_t>(known - 1);
  } while (!state.compare_exchange_weak(known, next, std::memory_order_relaxed));
  if (next == NEWLY_WON || next == NEWLY_LOST) {
    // Publishes the state to the block's next visitor.
    std::atomic_ref(hasNews_[index / BLOCK]).store(1, std::memory_order_release);
  }
}

}  // namespace bitbases
