#include "protocol/winboard_lines.h"

#include "board/notation.h"
#include "protocol/append.h"

namespace ombrin {

std::string winboardThinkingLine(int depth, Score score, std::uint64_t time, std::uint64_t nodes,
                                 Move ponderMove, std::span<const Move> line) {
  constexpr std::size_t LONG_ENOUGH = 2032;
  std::string text;
  append(text, "%i %i %llu %llu", depth, score.value(), static_cast<unsigned long long>(time / 10),
         static_cast<unsigned long long>(nodes));
  if (!ponderMove.isNull()) text += " " + moveToCoordinates(ponderMove);
  for (const Move move : line) {
    if (text.size() > LONG_ENOUGH) break;
    text += " " + moveToCoordinates(move);
  }
  return text;
}

}  // namespace ombrin
