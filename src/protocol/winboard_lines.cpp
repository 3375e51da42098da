#include "protocol/winboard_lines.h"

#include "board/notation.h"
#include "protocol/append.h"

namespace ombrin {

std::string winboardThinkingLine(const SearchReport& report, Move ponderMove) {
  constexpr std::size_t LONG_ENOUGH = 2032;
  std::string text;
  append(text, "%i %i %llu %llu", report.depth, report.score.value(),
         static_cast<unsigned long long>(report.time / 10),
         static_cast<unsigned long long>(report.nodes));
  if (!ponderMove.isNull()) text += " " + moveToCoordinates(ponderMove);
  for (const Move move : report.line.moves()) {
    if (text.size() > LONG_ENOUGH) break;
    text += " " + moveToCoordinates(move);
  }
  return text;
}

}  // namespace ombrin
