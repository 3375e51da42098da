#include "protocol/winboard_lines.h"

#include "board/notation.h"
#include "util/format.h"

namespace ombrin {

namespace {

// Mates are told by their distance in moves beyond a number that no other score reaches.
int winboardScore(Score score) {
  constexpr int MATE_BASE = 100000;
  if (score > MATE_BOUND) return MATE_BASE + score.movesToMate();
  if (score < -MATE_BOUND) return -MATE_BASE + score.movesToMate();
  return score.value();
}

}  // namespace

std::string winboardThinkingLine(const SearchReport& report, Move ponderMove) {
  constexpr std::size_t LONG_ENOUGH = 2032;
  std::string text;
  append(text, "%i %i %llu %llu", report.depth, winboardScore(report.score),
         static_cast<unsigned long long>(report.time / 10),
         static_cast<unsigned long long>(report.nodes));
  const auto addMove = [&text](Move move) {
    text += ' ';
    text += moveToCoordinates(move);
  };
  if (!ponderMove.isNull()) addMove(ponderMove);
  for (const Move move : report.line.moves()) {
    if (text.size() > LONG_ENOUGH) break;
    addMove(move);
  }
  return text;
}

}  // namespace ombrin
