#include "protocol/winboard_lines.h"

#include "board/notation.h"
#include "util/format.h"

namespace ombrin {

std::string winboardThinkingLine(const SearchReport& report, Move ponderMove) {
  constexpr std::size_t LONG_ENOUGH = 2032;
  std::string text;
  append(text, "%i %i %llu %llu", report.depth, report.score.value(),
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
