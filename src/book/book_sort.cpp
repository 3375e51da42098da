#include "book/book_sort.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace ombrin {

namespace {

constexpr std::size_t BUCKETS = 256;

std::size_t bucketOf(const BookEntry& entry) {
  return static_cast<std::size_t>(entry.key >> 56);
}

}  // namespace

// Keys are spread evenly, so a first pass brings every entry into the part of the whole where it
// belongs ("American flag sort": McIlroy, Bostic and McIlroy, 1993), and each part is sorted by
// comparing.
void sortBook(std::span<BookEntry> entries, Progress& progress) {
  std::array<std::size_t, BUCKETS + 1> starts{};
  for (const BookEntry& entry : entries) ++starts[bucketOf(entry) + 1];
  for (std::size_t bucket = 0; bucket < BUCKETS; ++bucket) starts[bucket + 1] += starts[bucket];
  std::array<std::size_t, BUCKETS + 1> next = starts;
  for (std::size_t bucket = 0; bucket < BUCKETS; ++bucket) {
    while (next[bucket] < starts[bucket + 1]) {
      BookEntry& entry = entries[next[bucket]];
      const std::size_t home = bucketOf(entry);
      if (home == bucket) {
        ++next[bucket];
      } else {
        std::swap(entry, entries[next[home]++]);
      }
    }
  }
  for (std::size_t bucket = 0; bucket < BUCKETS; ++bucket) {
    std::sort(entries.begin() + static_cast<std::ptrdiff_t>(starts[bucket]),
              entries.begin() + static_cast<std::ptrdiff_t>(starts[bucket + 1]), isBefore);
    progress.at(starts[bucket + 1]);
  }
}

}  // namespace ombrin
