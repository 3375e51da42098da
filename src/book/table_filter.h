// What happens to a build table before it becomes a book.
#pragma once

#include <cstdint>

#include "book/book_table.h"
#include "book/build_settings.h"
#include "book/game_collector.h"
#include "book/progress.h"

namespace ombrin {

// Empties the entries that have too few games, too low an Elo or too low a score, and counts them.
void filterMoves(BookTable& table, const BuildSettings& settings, BuildCounters& counters,
                 Progress& progress);

// The positions of a sorted table.
std::int64_t countPositions(const BookTable& table);

// Of a sorted table: keeps in every position the most played moves that together cover the share of
// its games that the settings ask for, and empties and counts the others.
void thinPositions(BookTable& table, const BuildSettings& settings, BuildCounters& counters,
                   Progress& progress);

}  // namespace ombrin
