#pragma once

#include <span>

#include "book/book_entry.h"
#include "book/progress.h"

namespace ombrin {

// Brings the entries into the order of isBefore().
void sortBook(std::span<BookEntry> entries, Progress& progress);

}  // namespace ombrin
