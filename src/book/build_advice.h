#pragma once

#include <cstdint>

#include "book/build_settings.h"
#include "book/game_collector.h"

namespace ombrin {

// When no game or no move is left: names the setting that rejected most, and what would take them,
// on standard output. `games` have been read; `moves` were there before the filter.
void adviseOnGames(const BuildCounters& counters, const BuildSettings& settings,
                   std::int64_t games);
void adviseOnMoves(const BuildCounters& counters, std::int64_t moves);

}  // namespace ombrin
