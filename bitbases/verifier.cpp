#include "verifier.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "grid.h"
#include "moves.h"
#include "outcome.h"
#include "parallel.h"

namespace bitbases {

namespace {

constexpr std::uint64_t GRAIN = 1024;  // words

// The values of all positions of one table, by side, word and the black king's square.
class Values {
 public:
  Values(const Material& material, const TableSet& tables, int threads) : grid_(material) {
    for (auto& words : won_) words.resize(grid_.words());
    for (auto& words : lost_) words.resize(grid_.words());
    forRanges(grid_.words(), GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
      for (auto word = static_cast<std::uint32_t>(begin); word < end; ++word) {
        forPositions(word, ~Squares{0}, [&](const Position& position) {
          // What is not held counts as drawn, and will be found to be wrong.
          const Value value = tables.value(position).value_or(DRAW);
          const Squares king = bitOf(position.king[1]);
          if (value == WIN) won_[position.side][word] |= king;
          if (value == LOSS) lost_[position.side][word] |= king;
        });
      }
    });
  }

  const Grid& grid() const { return grid_; }

  // visit(position) for the legal positions of a word with the black king on one of the squares.
  template <typename Visit>
  void forPositions(std::uint32_t word, Squares squares, const Visit& visit) const {
    Position position = grid_.frame(word);
    Squares taken = bitOf(position.king[0]);
    for (const Man& man : position.men()) {
      if ((taken & bitOf(man.square)) != 0) return;
      taken |= bitOf(man.square);
    }
    squares &= ~taken;
    while (squares != 0) {
      position.king[1] = popSquare(squares);
      for (const Color side : {0, 1}) {
        position.side = side;
        if (isLegal(position)) visit(position);
      }
    }
  }

  Value at(const Position& position) const {
    const Grid::Place place = grid_.find(position);
    const Squares king = bitOf(place.symmetry(position.king[1]));
    if ((won_[position.side][place.word] & king) != 0) return WIN;
    return (lost_[position.side][place.word] & king) != 0 ? LOSS : DRAW;
  }

 private:
  Grid grid_;
  std::array<std::vector<Squares>, 2> won_;
  std::array<std::vector<Squares>, 2> lost_;
};

Value valueBehind(const TableSet& tables, const Values& values, const Position& position,
                  const Move& move) {
  const Position next = after(position, move);
  if (!move.isQuiet()) return negated(tables.value(next).value_or(DRAW));
  const Value quiet = values.at(next);
  if (!move.isDoubleStep) return negated(quiet);
  return negated(withEnPassant(next, quiet, enPassantValue(tables, next, move.slot)));
}

Value expectedValue(const TableSet& tables, const Values& values, const Position& position) {
  const MoveList list = legalMoves(position);
  if (list.moves().empty()) return isInCheck(position, position.side) ? LOSS : DRAW;
  Value best = LOSS;
  for (const Move& move : list.moves()) {
    best = better(best, valueBehind(tables, values, position, move));
    if (best == WIN) break;
  }
  return best;
}

}  // namespace

Totals verify(const Material& material, const TableSet& tables, int threads) {
  const Values values(material, tables, threads);
  Totals totals;
  std::mutex adding;
  forRanges(values.grid().words(), GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
    Totals part;
    for (auto word = static_cast<std::uint32_t>(begin); word < end; ++word) {
      values.forPositions(word, values.grid().counted(word), [&](const Position& position) {
        const Value value = values.at(position);
        ++(value == WIN    ? part.won
           : value == LOSS ? part.lost
                           : part.drawn)[static_cast<std::size_t>(position.side)];
        if (value != expectedValue(tables, values, position)) ++part.wrong;
      });
    }
    const std::scoped_lock lock(adding);
    for (const std::size_t side : {0U, 1U}) {
      totals.won[side] += part.won[side];
      totals.drawn[side] += part.drawn[side];
      totals.lost[side] += part.lost[side];
    }
    totals.wrong += part.wrong;
  });
  return totals;
}

}  // namespace bitbases
