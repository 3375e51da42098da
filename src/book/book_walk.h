#pragma once

#include <cstdint>

#include "book/book_file.h"
#include "book/book_table.h"

namespace ombrin {

struct WalkCounts {
  std::int64_t positions = 0;
  std::int64_t moves = 0;  // entered
  std::int64_t unfit = 0;  // that are not legal, or that the new book cannot hold
  bool isFull = false;     // the walk ended because the table had no more room
};

// Goes through an open book from the start position on, by the moves that it knows, to every
// position that can be reached so, and enters them into the table as a book of that kind files
// them. Both have the same board, which is at the start position in the end.
WalkCounts walkBook(BookFile& book, BookTable& table, BookKind kind);

}  // namespace ombrin
