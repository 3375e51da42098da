#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "book/book_format.h"

namespace ombrin {

// Why the file is no book with this header; empty when nothing speaks against it. `length` is the
// file's, in bytes. A book of up to 64 MiB is read from end to end, a larger one here and there.
std::string bookProblem(std::istream& file, const BookHeader& header, std::uint64_t length);

}  // namespace ombrin
