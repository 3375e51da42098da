#include "outcome.h"

namespace bitbases {

std::optional<Value> enPassantValue(const TableSet& tables, const Position& position,
                                    int doubleStepped) {
  std::optional<Value> best;
  const EnPassantCaptures captures = enPassantCaptures(position, doubleStepped);
  for (int i = 0; i < captures.count; ++i) {
    const Value value = negated(tables.value(captures.results[i]).value_or(DRAW));
    best = better(best.value_or(LOSS), value);
  }
  return best;
}

Value withEnPassant(const Position& position, Value quiet, std::optional<Value> capture) {
  if (!capture) return quiet;
  // When nothing else is possible the capture is forced, even where it saves from a stalemate.
  if (*capture == LOSS && legalMoves(position).moves().empty()) return LOSS;
  return better(quiet, *capture);
}

}  // namespace bitbases
