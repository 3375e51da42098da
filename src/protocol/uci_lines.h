// The lines of the Universal Chess Interface that report on a search, as texts.
#pragma once

#include <string>

#include "board/move.h"
#include "search/search_report.h"

namespace ombrin {

// "info depth ... pv ...".
std::string uciInfoLine(const SearchReport& report);
// "info currmove ...".
std::string uciCurrentMoveLine(const RootMoveReport& report);
// "bestmove ..."; without a ponder move when that is null.
std::string uciBestMoveLine(Move bestMove, Move ponderMove);

}  // namespace ombrin
