#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "book/book_entry.h"
#include "book/progress.h"

namespace ombrin {

// Calls visit(span of entries) for every position of a sorted table, in which no entry is empty.
template <typename Entry, typename Visitor>
void forEachPosition(std::span<Entry> entries, Visitor&& visit) {
  auto first = entries.begin();
  while (first != entries.end()) {
    const auto last =
        std::find_if(first, entries.end(),
                     [key = first->key](const BookEntry& entry) { return entry.key != key; });
    visit(std::span<Entry>(first, last));
    first = last;
  }
}

// The same, showing how many entries are done.
template <typename Entry, typename Visitor>
void forEachPosition(std::span<Entry> entries, Progress& progress, Visitor&& visit) {
  constexpr std::uint64_t BETWEEN_REPORTS = 1 << 12;
  std::uint64_t done = 0;
  forEachPosition(entries, [&](std::span<Entry> position) {
    visit(position);
    const std::uint64_t reports = done / BETWEEN_REPORTS;
    done += position.size();
    if (done / BETWEEN_REPORTS != reports) progress.at(done);
  });
}

}  // namespace ombrin
