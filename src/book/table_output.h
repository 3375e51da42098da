#pragma once

#include "book/book_output.h"
#include "book/book_table.h"

namespace ombrin {

// Writes the entries of a sorted table but for the empty ones; `flags` say what the records hold.
// Reports on standard output. True when the book is complete under its name; otherwise a book that
// was there before is as it was.
bool saveTable(const BookTable& table, BookOutput& output, int flags);

}  // namespace ombrin
