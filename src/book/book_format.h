// The bytes of a book file: an optional header, then records in ascending order of keys. All
// numbers are big-endian. A Polyglot book is one more kind of records without a header.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "book/book_entry.h"
#include "book/polyglot_format.h"

namespace ombrin {

// Flags that say what the records of a book hold. KEY is for readRecord alone.
enum BookFlag : std::uint8_t {
  BOOK_KEY = 1,
  BOOK_COUNTS = 2,
  BOOK_ELO = 4,
  // A Polyglot record: a move and a weight. Never together with the two before, and not in a file's
  // header.
  BOOK_WEIGHT = 8,
};

// Key, origin and destination, then what the flags say.
constexpr int recordSizeOf(int flags) {
  if ((flags & BOOK_WEIGHT) != 0) return polyglot::RECORD_SIZE;
  return 10 + ((flags & BOOK_COUNTS) != 0 ? 6 : 0) + ((flags & BOOK_ELO) != 0 ? 2 : 0);
}

struct BookHeader {
  static constexpr int SIZE = 16;

  int size = SIZE;  // the offset of the first record; 0 in a file that has no header
  int version = 2;
  int recordSize = recordSizeOf(BOOK_COUNTS | BOOK_ELO);
  int flags = BOOK_COUNTS | BOOK_ELO;

  // A file without a header: key, move and counts.
  static constexpr BookHeader headerless() {
    return {0, 0, recordSizeOf(BOOK_COUNTS), BOOK_COUNTS};
  }
  static constexpr BookHeader polyglot() { return {0, 0, recordSizeOf(BOOK_WEIGHT), BOOK_WEIGHT}; }
  static constexpr BookHeader withFlags(int flags) { return {SIZE, 2, recordSizeOf(flags), flags}; }
};

void writeHeader(const BookHeader& header, std::ostream& out);

// Reads from the file's start; without a header in it, `header` becomes headerless(). False when
// the file ends within a header.
bool readHeader(std::istream& in, BookHeader& header);

// Writes nothing for an empty entry, and several records, each with the full Elo, for one with a
// count above 65535; of a weight above that, as much. The stream tells of failures.
void writeRecord(const BookEntry& entry, std::ostream& out, int flags);

// Reads one record; its key only when the flags say KEY, or else the entry keeps the one it has.
// What the flags leave out is 0. False at the end of the file.
bool readRecord(BookEntry& entry, std::istream& in, int flags);

// False at the end of the file.
bool readKey(std::uint64_t& key, std::istream& in);

}  // namespace ombrin
