#include "book/table_output.h"

#include "book/book_format.h"
#include "book/progress.h"
#include "util/print.h"

namespace ombrin {

bool saveTable(const BookTable& table, BookOutput& output, int flags) {
  constexpr std::uint64_t BETWEEN_REPORTS = 1 << 12;
  print(stdout, "saving book to %s\n", output.name().c_str());
  if (flags != BOOK_WEIGHT) writeHeader(BookHeader::withFlags(flags), output.stream());
  std::size_t moves = 0;
  {
    Progress progress(table.used(), Progress::ENTRIES_PER_DOT);
    std::uint64_t seen = 0;
    for (const BookEntry& entry : table.entries()) {
      if (++seen % BETWEEN_REPORTS == 0) progress.at(seen);
      if (entry.isEmpty()) continue;
      writeRecord(entry, output.stream(), flags);
      ++moves;
    }
  }
  if (!output.commit()) {
    print(stdout, "could not write file: %s\n", output.name().c_str());
    return false;
  }
  print(stdout, "saved %zu moves\n", moves);
  return true;
}

}  // namespace ombrin
