#include "book/book_table.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "book/book_sort.h"
#include "platform/instructions.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::size_t SMALLEST = 1024;
// Entries are numbered with 32 bits.
constexpr std::size_t LARGEST = std::min<std::size_t>(UINT32_MAX, SIZE_MAX / sizeof(BookEntry));
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

bool BookTable::makeRoomFor(std::size_t entries) {
  while (!hasRoomFor(entries)) {
    if (!grow() && !dropRare(entries)) return false;
  }
  return true;
}

// To twice the size, or as far as the limit allows. What is left must be worth the trouble.
bool BookTable::grow() {
  constexpr std::uint64_t INDEX_BYTES = sizeof(std::uint8_t) + sizeof(std::uint32_t);
  constexpr std::uint64_t SLOT_BYTES = INDEX_BYTES + sizeof(BookEntry) * 3 / 4;
  // While it grows there are two indices.
  const std::uint64_t oldIndex = capacity_ * INDEX_BYTES;
  const std::uint64_t most = mostBytes_ > oldIndex ? (mostBytes_ - oldIndex) / SLOT_BYTES : 0;
  const std::uint64_t wanted = std::max<std::uint64_t>(2 * capacity_, SMALLEST);
  const auto entries = static_cast<std::size_t>(std::min({wanted, most, std::uint64_t{LARGEST}}));
  return (capacity_ == 0 || entries > capacity_ + capacity_ / 8) && resize(entries);
}

// The entry of that position and move.
inline BookEntry& BookTable::findOrMake(const BookEntry& move) {
  const std::uint8_t tag = tagOf(move.key);
  std::size_t slot = move.key % capacity_;
  for (; tags_[slot] != 0; slot = slot + 1 == capacity_ ? 0 : slot + 1) {
    if (tags_[slot] != tag) continue;
    BookEntry& known = entries_[numbers_[slot]];
    if (known.key == move.key && known.isSameMove(move)) return known;
  }
  tags_[slot] = tag;
  numbers_[slot] = static_cast<std::uint32_t>(used_);
  return entries_[used_++] = move;
}

void BookTable::add(const BookEntry& move, Outcome outcome, float weight) {
  BookEntry& entry = findOrMake(move);
  ++(outcome == WIN ? entry.wins : outcome == DRAW ? entry.draws : entry.losses);
  entry.eloFactor += weight;
}

void BookTable::add(const BookEntry& more) {
  BookEntry move = more;
  move.wins = move.draws = move.losses = 0;
  move.eloFactor = 0;
  addGames(findOrMake(move), more);
}

// Entries stand in the order in which they came, so the first ones with one game were played
// longest ago. A quarter of them goes, at the most.
bool BookTable::dropRare(std::size_t wanted) {
  constexpr std::size_t MOST_GAMES = 64;
  std::array<std::size_t, MOST_GAMES> counts{};
  for (const BookEntry& entry : entries()) {
    if (entry.games() < MOST_GAMES) ++counts[entry.games()];
  }
  const std::size_t fewest = std::max(wanted, used_ / 8);
  std::size_t freed = 0;
  for (std::uint64_t games = 0; games < MOST_GAMES; ++games) {
    if (freed + counts[games] >= fewest) {
      keepOnly(games, std::min(counts[games], std::max(wanted, used_ / 4) - freed));
      return true;
    }
    freed += counts[games];
  }
  return false;
}

// Lets go of all entries with fewer games than that, and of the first of those with as many.
void BookTable::keepOnly(std::uint64_t fewest, std::size_t mostOfFewest) {
  const std::span<BookEntry> all = entries();
  const auto end = std::remove_if(all.begin(), all.end(), [&](const BookEntry& entry) {
    if (entry.games() != fewest) return entry.games() < fewest;
    if (mostOfFewest == 0) return false;
    --mostOfFewest;
    return true;
  });
  dropped_ += all.end() - end;
  used_ = static_cast<std::size_t>(end - all.begin());
  std::fill_n(tags_.get(), capacity_, std::uint8_t{0});
  for (std::size_t number = 0; number < used_; ++number) index(static_cast<std::uint32_t>(number));
}

void BookTable::prefetch(std::uint64_t key) const {
  if (capacity_ == 0) return;
  const std::size_t slot = key % capacity_;
  ombrin::prefetch(&tags_[slot]);
  ombrin::prefetch(&numbers_[slot]);
}

void BookTable::sort(Progress& progress) {
  tags_.reset();
  numbers_.reset();
  const std::span<BookEntry> all = entries();
  const auto end = std::remove_if(all.begin(), all.end(),
                                  [](const BookEntry& entry) { return entry.isEmpty(); });
  used_ = static_cast<std::size_t>(end - all.begin());
  sortBook(entries(), progress);
}

}  // namespace ombrin
