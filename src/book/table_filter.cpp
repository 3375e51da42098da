#include "book/table_filter.h"

#include <algorithm>
#include <cmath>

#include "book/table_positions.h"

namespace ombrin {

namespace {

constexpr std::uint64_t BETWEEN_REPORTS = 1 << 16;

}  // namespace

void filterMoves(BookTable& table, const BuildSettings& settings, BuildCounters& counters,
                 Progress& progress) {
  std::uint64_t seen = 0;
  for (BookEntry& entry : table.entries()) {
    if (++seen % BETWEEN_REPORTS == 0) progress.at(seen);
    const double minScore = entry.isBlackMove() ? settings.minscoreb : settings.minscorew;
    std::int64_t* dropped = nullptr;
    if (static_cast<std::int64_t>(entry.games()) < settings.mingames) {
      dropped = &counters.droppedByGames;
    } else if (entry.elo() < settings.minquality) {
      dropped = &counters.droppedByQuality;
    } else if (entry.score() < minScore) {
      dropped = &counters.droppedByScore;
    }
    if (dropped == nullptr) continue;
    entry = BookEntry();
    ++*dropped;
  }
}

std::int64_t countPositions(const BookTable& table) {
  std::int64_t count = 0;
  forEachPosition(table.entries(), [&count](std::span<const BookEntry>) { ++count; });
  return count;
}

void thinPositions(BookTable& table, const BuildSettings& settings, BuildCounters& counters,
                   Progress& progress) {
  forEachPosition(table.entries(), progress, [&](std::span<BookEntry> moves) {
    std::int64_t games = 0;
    for (const BookEntry& move : moves) games += static_cast<std::int64_t>(move.games());
    std::int64_t budget = std::llround(static_cast<double>(games) * settings.keeppct);
    for (BookEntry& move : moves) {
      if (budget >= 0) {
        budget -= static_cast<std::int64_t>(move.games());
      } else {
        move = BookEntry();
        ++counters.droppedByKeeppct;
      }
    }
  });
}

}  // namespace ombrin
