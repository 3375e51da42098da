#include "verifier.h"

#include <mutex>

#include "layout.h"
#include "moves.h"
#include "outcome.h"
#include "parallel.h"

namespace bitbases {

namespace {

Value valueBehind(const TableSet& tables, const Position& position, const Move& move) {
  const Position next = after(position, move);
  const Value quiet = tables.value(next).value_or(DRAW);
  if (!move.isDoubleStep) return negated(quiet);
  return negated(withEnPassant(next, quiet, enPassantValue(tables, next, move.slot)));
}

Value expectedValue(const TableSet& tables, const Position& position) {
  const MoveList list = legalMoves(position);
  if (list.moves().empty()) return isInCheck(position, position.side) ? LOSS : DRAW;
  Value best = LOSS;
  for (const Move& move : list.moves()) {
    best = better(best, valueBehind(tables, position, move));
    if (best == WIN) break;
  }
  return best;
}

}  // namespace

Totals verify(const Material& material, const TableSet& tables, int threads) {
  const Layout layout(material);
  Totals totals;
  std::mutex adding;
  forRanges(layout.size(), 4096, threads, [&](std::uint64_t begin, std::uint64_t end) {
    Totals part;
    for (std::uint64_t index = begin; index < end; ++index) {
      const Position position = layout.position(index);
      if (!layout.isNumbered(position, index) || !isLegal(position)) continue;
      const Value value = tables.value(position).value_or(DRAW);
      ++(value == WIN ? part.won : value == LOSS ? part.lost : part.drawn);
      if (value != expectedValue(tables, position)) ++part.wrong;
    }
    const std::scoped_lock lock(adding);
    totals.won += part.won;
    totals.drawn += part.drawn;
    totals.lost += part.lost;
    totals.wrong += part.wrong;
  });
  return totals;
}

}  // namespace bitbases
