#include "book/book_statistics.h"

#include <array>
#include <bit>
#include <cstdint>

#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::size_t BUCKETS = 20;
constexpr std::uint64_t RECORDS_PER_DOT = 1024;

// Bucket 0 holds 0 and 1 games, and bucket k those up to 2^k that the ones before do not hold.
std::size_t bucketOf(std::uint64_t games) {
  return games < 2 ? 0 : static_cast<std::size_t>(std::bit_width(games - 1));
}

double percentOf(double part, double whole) {
  return whole == 0 ? 0 : 100 * part / whole;
}

void printZeroSized(const BookEntry& entry, std::uint64_t positions) {
  print(stdout, "\n%llu: zero-sized move: 0x%08x%08x ", static_cast<unsigned long long>(positions),
        static_cast<unsigned>(entry.key >> 32), static_cast<unsigned>(entry.key));
  // No games, so no wins, draws and score either.
  print(stdout, "%-6s %8u %8.2f %8.2f %8.2f", moveText(entry).c_str(), 0U, 0.0, 0.0, 0.0);
  if (entry.eloFactor != 0) print(stdout, " %6.0f", entry.elo());
  print(stdout, "\n");
}

}  // namespace

void logBook(BookFile& book) {
  print(stdout, "header.size=%i\nentry .size=%i\n", book.header().size, book.header().recordSize);
  std::array<std::uint64_t, BUCKETS> buckets{};
  std::uint64_t records = 0;
  std::uint64_t positions = 0;
  std::uint64_t lastKey = 0;
  BookEntry entry;
  book.rewind();
  while (book.next(entry)) {
    if (records == 0 || entry.key != lastKey) ++positions;
    lastKey = entry.key;
    if (++records % RECORDS_PER_DOT == 0) {
      print(stdout, ".");
      std::fflush(stdout);
    }
    const std::size_t bucket = bucketOf(entry.games());
    if (bucket < BUCKETS) ++buckets[bucket];
    if (entry.isEmpty()) printZeroSized(entry, positions);
  }

  print(stdout, "\n\n");
  std::uint64_t accounted = 0;
  for (std::size_t k = 0; k < BUCKETS; ++k) {
    if (buckets[k] == 0) continue;
    accounted += buckets[k];
    print(stdout, "[%i-%i]: #=%llu, %%=%4.2f\n", (1 << k) / 2 + 1, 1 << k,
          static_cast<unsigned long long>(buckets[k]),
          percentOf(static_cast<double>(buckets[k]), static_cast<double>(records)));
  }
  print(stdout, "total moves=%llu, accounted=%llu\n", static_cast<unsigned long long>(records),
        static_cast<unsigned long long>(accounted));
  print(stdout, "total positions=%llu, moves/position=%3.2f\n",
        static_cast<unsigned long long>(positions),
        positions == 0 ? 0.0 : static_cast<double>(records) / static_cast<double>(positions));
}

}  // namespace ombrin
