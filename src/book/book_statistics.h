#pragma once

#include "book/book_file.h"

namespace ombrin {

// Prints how many records and positions an open book has, and how the games are spread over the
// records, to standard output. Reads the whole file.
void logBook(BookFile& book);

}  // namespace ombrin
