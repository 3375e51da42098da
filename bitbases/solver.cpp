#include "solver.h"

#include <algorithm>
#include <atomic>

#include "frame_sets.h"
#include "parallel.h"

namespace bitbases {

namespace {

constexpr std::uint64_t GRAIN = 2048;  // words

}  // namespace

Solver::Open::Open(std::uint32_t size) : fresh(size) {
  for (const Color side : {0, 1}) {
    notWon[side].resize(size);
    unsaved[side].resize(size);
  }
}

Solver::Solver(const Material& material, const TableSource& source, int threads)
    : table_(std::make_shared<FullTable>(material)),
      grid_(table_->grid),
      leaving_(material, source, table_.get()),
      threads_(threads) {
  for (const Color side : {0, 1}) table_->makeRoom(side);
}

std::shared_ptr<const FullTable> Solver::solve(const std::function<void(double)>& report) {
  std::vector<std::vector<std::uint32_t>> bySteps;
  for (std::uint32_t slice = 0; slice < grid_.slices(); ++slice) {
    const auto steps = static_cast<std::size_t>(grid_.pawnSteps(slice));
    if (bySteps.size() <= steps) bySteps.resize(steps + 1);
    bySteps[steps].push_back(slice);
  }
  std::uint32_t done = 0;
  std::atomic<int> longest = 0;
  const auto solveOne = [&](std::uint32_t slice, int threads) {
    const int chain = solveSlice(slice, threads);
    int known = longest.load(std::memory_order_relaxed);
    while (known < chain && !longest.compare_exchange_weak(known, chain)) {
    }
  };
  std::ranges::reverse(bySteps);
  for (const auto& slices : bySteps) {
    // Slices with as many steps do not lead to each other.
    if (grid_.freeMen() < 2) {
      forRanges(slices.size(), 1, threads_,
                [&](std::uint64_t n, std::uint64_t) { solveOne(slices[n], 1); });
    } else {
      for (const std::uint32_t slice : slices) solveOne(slice, threads_);
    }
    done += static_cast<std::uint32_t>(slices.size());
    report(static_cast<double>(done) / grid_.slices());
  }
  longestChain_ = longest;
  return table_;
}

int Solver::solveSlice(std::uint32_t slice, int threads) {
  const std::uint32_t size = grid_.sliceSize();
  Open open(size);
  forRanges(size, GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
    for (std::uint64_t word = begin; word < end; ++word) {
      this->open(open, slice, static_cast<std::uint32_t>(word));
    }
  });
  int longest = 0;
  for (const Color winner : {0, 1}) {
    longest = std::max(longest, findWins(open, slice, winner, threads));
  }
  const std::uint32_t first = slice * size;
  forRanges(size, GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
    for (std::uint64_t word = begin; word < end; ++word) {
      const Position frame = grid_.frame(first + static_cast<std::uint32_t>(word));
      for (const Color side : {0, 1}) {
        table_->won[side][first + word] = legalSet(frame, side) & ~open.notWon[side][word];
      }
    }
  });
  return longest;
}

void Solver::open(Open& open, std::uint32_t slice, std::uint32_t word) const {
  const Position frame = grid_.frame(slice * grid_.sliceSize() + word);
  for (const Color side : {0, 1}) {
    const Squares legal = legalSet(frame, side);
    if (legal == 0) continue;
    const Leaving leaving = leaving_.all(frame, side);
    open.notWon[side][word] = legal & ~leaving.won;
    const Squares unsaved = legal & ~leaving.saved;
    const Squares stuck = unsaved & ~leaving.movable & ~checkedSet(frame, side);
    const Squares stalemates = stuck & ~movableSet(frame, side, stuck);
    open.unsaved[side][word] = unsaved & ~stalemates;
  }
}

int Solver::findWins(Open& open, std::uint32_t slice, Color winner, int threads) {
  const std::uint32_t size = grid_.sliceSize();
  const Color loser = 1 - winner;
  Squares* const lost = &table_->lost[loser][slice * size];
  // Lost positions that are found in one pass are used in the next only, so that the passes count
  // the moves.
  for (int passes = 0;; ++passes) {
    std::atomic<bool> found = false;
    forRanges(size, GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
      bool isAny = false;
      for (std::uint64_t word = begin; word < end; ++word) {
        Squares& unsaved = open.unsaved[loser][word];
        if (unsaved == 0) continue;
        const Squares fresh = newlyLost(open, slice, static_cast<std::uint32_t>(word), loser);
        if (fresh == 0) continue;
        open.fresh[word] = fresh;
        lost[word] |= fresh;
        unsaved &= ~fresh;
        isAny = true;
      }
      if (isAny) found.store(true, std::memory_order_relaxed);
    });
    if (!found) return passes;
    forRanges(size, GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
      for (std::uint64_t word = begin; word < end; ++word) {
        if (open.fresh[word] == 0) continue;
        spreadWins(open, slice, static_cast<std::uint32_t>(word), winner);
        open.fresh[word] = 0;
      }
    });
  }
}

// The steps of the white king to squares that are empty but for the black king: visit(word,
// symmetry) for the word of the slice that each leads to, or comes from.
template <typename Visit>
void Solver::forWhiteKingSteps(const Position& frame, std::uint32_t word,
                               const Visit& visit) const {
  Squares targets = kingSteps(frame.king[0]) & ~occupiedInFrame(frame);
  const int here = grid_.kingNumber(frame.king[0]);
  while (targets != 0) {
    const Square to = popSquare(targets);
    if (const int there = grid_.kingNumber(to); there >= 0) {
      const auto offset = (there - here) * static_cast<std::int32_t>(grid_.placements());
      if (!visit(word + static_cast<std::uint32_t>(offset), Symmetry{})) return;
    } else {
      // Only without pawns: there is one slice.
      Position next = frame;
      next.king[0] = to;
      const Grid::Place place = grid_.find(next);
      if (!visit(place.word, place.symmetry)) return;
    }
  }
}

// The same for the moves of one side's pieces: visit(word, way), where `way` are the squares on
// which the black king would be in the way.
template <typename Visit>
void Solver::forPieceMoves(const Position& frame, std::uint32_t word, Color color,
                           const Visit& visit) const {
  const Squares men = occupiedInFrame(frame);
  for (int slot = 0; slot < frame.count; ++slot) {
    const Man& man = frame.slots[slot];
    if (man.color != color || man.type == PAWN) continue;
    Squares targets = attacks(man, men) & ~men;
    while (targets != 0) {
      const Square to = popSquare(targets);
      const auto there = word + static_cast<std::uint32_t>(grid_.offset(frame, slot, to));
      if (!visit(there, between(man.square, to))) return;
    }
  }
}

// The positions of a word whose moves have all been found to lose. Moves that are not legal lead to
// positions that are not in `notWon`.
Squares Solver::newlyLost(const Open& open, std::uint32_t slice, std::uint32_t word,
                          Color loser) const {
  const std::vector<Squares>& notWon = open.notWon[1 - loser];
  Squares unsaved = open.unsaved[loser][word];
  if (loser == 1) {
    unsaved &= ~spread(notWon[word]);
    if (unsaved == 0) return 0;
  }
  const Position frame = grid_.frame(slice * grid_.sliceSize() + word);
  forPieceMoves(frame, word, loser, [&](std::uint32_t there, Squares way) {
    unsaved &= ~(notWon[there] & ~way);
    return unsaved != 0;
  });
  if (loser == 0 && unsaved != 0) {
    forWhiteKingSteps(frame, word, [&](std::uint32_t there, Symmetry symmetry) {
      unsaved &= ~undone(symmetry, notWon[there]);
      return unsaved != 0;
    });
  }
  return unsaved;
}

// Marks as won whatever leads to the newly lost positions of a word.
void Solver::spreadWins(Open& open, std::uint32_t slice, std::uint32_t word, Color winner) const {
  const Squares fresh = open.fresh[word];
  const auto win = [&](std::uint32_t there, Squares squares) {
    std::atomic_ref notWon(open.notWon[winner][there]);
    if ((notWon.load(std::memory_order_relaxed) & squares) != 0) {
      notWon.fetch_and(~squares, std::memory_order_relaxed);
    }
  };
  const Position frame = grid_.frame(slice * grid_.sliceSize() + word);
  forPieceMoves(frame, word, winner, [&](std::uint32_t there, Squares way) {
    win(there, fresh & ~way);
    return true;
  });
  if (winner == 1) {
    win(word, spread(fresh));
  } else {
    forWhiteKingSteps(frame, word, [&](std::uint32_t there, Symmetry symmetry) {
      const Squares squares = applied(symmetry, fresh);
      win(there, squares);
      // A position and its reflection in the diagonal are both kept when the white king stands on
      // it, and both lead to the one that is kept of positions beside it.
      if (grid_.isOnDiagonal(frame)) return true;
      if (const Position next = grid_.frame(there); grid_.isOnDiagonal(next)) {
        win(grid_.reflected(next), transposed(squares));
      }
      return true;
    });
  }
}

}  // namespace bitbases
