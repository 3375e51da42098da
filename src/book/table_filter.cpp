#include "book/table_filter.h"

#include <algorithm>
#include <cmath>

namespace ombrin {

namespace {

// Calls visit(span of entries) for every position of a sorted table.
template <typename Entry, typename Visitor>
void forEachPosition(std::span<Entry> entries, Visitor&& visit) {
  auto first = std::find_if(entries.begin(), entries.end(),
                            [](const BookEntry& entry) { return !entry.isEmpty(); });
  while (first != entries.end()) {
    const auto last =
        std::find_if(first, entries.end(),
                     [key = first->key](const BookEntry& entry) { return entry.key != key; });
    visit(std::span<Entry>(first, last));
    first = last;
  }
}

}  // namespace

void filterMoves(BookTable& table, const BuildSettings& settings, BuildCounters& counters) {
  for (BookEntry& entry : table.entries()) {
    if (entry.isEmpty()) continue;
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

void thinPositions(BookTable& table, const BuildSettings& settings, BuildCounters& counters) {
  forEachPosition(table.entries(), [&](std::span<BookEntry> moves) {
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
