#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "book/book_entry.h"

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

}  // namespace ombrin
