#include "book/book_table.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "book/book_format.h"
#include "util/prefetch.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::size_t SMALLEST = 1024;
// Entries are numbered with 32 bits.
constexpr std::size_t LARGEST = UINT32_MAX;
constexpr unsigned MEBIBYTE_SHIFT = 20;

// Never 0. Bits that have little to do with the slot.
std::uint8_t tagOf(std::uint64_t key) {
  return static_cast<std::uint8_t>(key >> 57 | 0x80);
}

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

  // The C functions, because they say no instead of throwing, and calloc's large blocks come zeroed
  // for free.
  // NOLINTBEGIN(*-no-malloc)
  Block<std::uint8_t> tags(static_cast<std::uint8_t*>(std::calloc(entries, 1)));
  Block<std::uint32_t> numbers(
      static_cast<std::uint32_t*>(std::calloc(entries, sizeof(std::uint32_t))));
  // NOLINTEND(*-no-malloc)
  if (!tags || !numbers || !reserveEntries(entries - entries / 4)) return false;
  tags_ = std::move(tags);
  numbers_ = std::move(numbers);
  capacity_ = entries;
  for (std::size_t number = 0; number < used_; ++number) index(static_cast<std::uint32_t>(number));
  return true;
}

bool BookTable::reserveEntries(std::size_t count) {
  // NOLINTNEXTLINE(*-no-malloc)
  void* const moved = std::realloc(entries_.get(), count * sizeof(BookEntry));
  if (moved == nullptr) return false;
  static_cast<void>(entries_.release());
  entries_.reset(static_cast<BookEntry*>(moved));
  return true;
}

// Puts an entry that is not in the hash table into it.
void BookTable::index(std::uint32_t number) {
  const std::uint64_t key = entries_[number].key;
  std::size_t slot = key % capacity_;
  while (tags_[slot] != 0) slot = slot + 1 == capacity_ ? 0 : slot + 1;
  tags_[slot] = tagOf(key);
  numbers_[slot] = number;
}

bool BookTable::add(std::uint64_t key, std::uint8_t from, std::uint8_t to, Outcome outcome,
                    float weight) {
  if (used_ >= loadLimit() && !grow()) return false;
  BookEntry move;
  move.key = key;
  move.from = from;
  move.to = to;
  const std::uint8_t tag = tagOf(key);
  std::size_t slot = key % capacity_;
  for (; tags_[slot] != 0; slot = slot + 1 == capacity_ ? 0 : slot + 1) {
    if (tags_[slot] != tag) continue;
    const BookEntry& known = entries_[numbers_[slot]];
    if (known.key == key && known.isSameMove(move)) break;
  }
  if (tags_[slot] == 0) {
    tags_[slot] = tag;
    numbers_[slot] = static_cast<std::uint32_t>(used_);
    entries_[used_++] = move;
  }
  BookEntry& entry = entries_[numbers_[slot]];
  ++(outcome == WIN ? entry.wins : outcome == DRAW ? entry.draws : entry.losses);
  entry.eloFactor += weight;
  return true;
}

void BookTable::prefetch(std::uint64_t key) const {
  if (capacity_ == 0) return;
  const std::size_t slot = key % capacity_;
  ombrin::prefetch(&tags_[slot]);
  ombrin::prefetch(&numbers_[slot]);
}

void BookTable::sort() {
  tags_.reset();
  numbers_.reset();
  const std::span<BookEntry> all = entries();
  const auto end = std::remove_if(all.begin(), all.end(),
                                  [](const BookEntry& entry) { return entry.isEmpty(); });
  std::sort(all.begin(), end, isBefore);
  used_ = static_cast<std::size_t>(end - all.begin());
}

bool BookTable::save(BookOutput& output) const {
  const std::string& path = output.name();
  print(stdout, "saving book to %s\n", path.c_str());
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
