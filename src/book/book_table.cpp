#include "book/book_table.h"

#include <algorithm>
#include <cstdint>

#include "book/book_format.h"
#include "book/book_output.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::size_t SMALLEST = 1024;
constexpr std::size_t LARGEST = SIZE_MAX / sizeof(BookEntry);
constexpr unsigned MEBIBYTE_SHIFT = 20;

}  // namespace

bool BookTable::resize(std::size_t entries) {
  entries = std::max(entries, SMALLEST);
  if (entries < capacity_) {
    print(stdout, "cannot resize %zu to smaller size %zu!\n", capacity_, entries);
    return false;
  }
  if (entries > LARGEST) return false;
  const std::size_t mebibytes = entries * sizeof(BookEntry) >> MEBIBYTE_SHIFT;
  if (mebibytes > 0) print(stdout, "+%zuMb+\n", mebibytes);

  // calloc: it says no instead of throwing, and large blocks come zeroed for free. A zeroed
  // BookEntry is an empty one.
  std::unique_ptr<BookEntry[], Free> old(
      static_cast<BookEntry*>(std::calloc(entries, sizeof(BookEntry))));
  if (!old) return false;
  old.swap(entries_);
  const std::size_t oldCapacity = capacity_;
  capacity_ = entries;
  for (const BookEntry& entry : std::span<const BookEntry>(old.get(), oldCapacity)) {
    if (!entry.isEmpty()) slotFor(entry.key, entry.from, entry.to) = entry;
  }
  return true;
}

BookEntry& BookTable::slotFor(std::uint64_t key, std::uint8_t from, std::uint8_t to) {
  std::size_t index = key % capacity_;
  for (;;) {
    BookEntry& entry = entries_[index];
    if (entry.isEmpty()) return entry;
    if (entry.key == key && ((entry.from ^ from) & 0x7f) == 0 && entry.to == to) return entry;
    if (++index == capacity_) index = 0;
  }
}

bool BookTable::add(std::uint64_t key, std::uint8_t from, std::uint8_t to, Outcome outcome,
                    float weight) {
  if (used_ >= loadLimit() && !grow()) return false;
  BookEntry& entry = slotFor(key, from, to);
  if (entry.isEmpty()) {
    entry.key = key;
    entry.from = from;
    entry.to = to;
    ++used_;
  }
  ++(outcome == WIN ? entry.wins : outcome == DRAW ? entry.draws : entry.losses);
  entry.eloFactor += weight;
  return true;
}

void BookTable::prefetch(std::uint64_t key) const {
  if (capacity_ > 0) __builtin_prefetch(&entries_[key % capacity_]);
}

void BookTable::sort() {
  const std::span<BookEntry> all = entries();
  const auto firstUsed = std::partition(all.begin(), all.end(),
                                        [](const BookEntry& entry) { return entry.isEmpty(); });
  std::sort(firstUsed, all.end(), isBefore);
}

bool BookTable::save(const std::string& path) const {
  print(stdout, "saving book to %s\n", path.c_str());
  BookOutput output(path);
  if (!output.isOpen()) {
    print(stdout, "could not open file: %s\n", path.c_str());
    return false;
  }
  const BookHeader header;
  writeHeader(header, output.stream());
  std::size_t moves = 0;
  for (const BookEntry& entry : entries()) {
    if (entry.isEmpty()) continue;
    writeRecord(entry, output.stream(), header.flags);
    ++moves;
  }
  if (!output.commit()) {
    print(stdout, "could not write file: %s\n", path.c_str());
    return false;
  }
  print(stdout, "saved %zu moves\n", moves);
  return true;
}

}  // namespace ombrin
