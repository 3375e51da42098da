// The lines of the WinBoard protocol that report on a search, as texts.
#pragma once

#include <string>

#include "board/move.h"
#include "search/search_report.h"

namespace ombrin {

// Depth, score, centiseconds, nodes and the expected line, without a line end. The score is in
// centipawns, or 100000 plus the moves to a mate, negative when it is suffered. While pondering,
// the line starts behind the ponder move, so that move is put before it; otherwise it is null.
std::string winboardThinkingLine(const SearchReport& report, Move ponderMove);

}  // namespace ombrin
