#pragma once

#include <cstddef>

namespace ombrin {

// Asks the system to back a big block of memory, which must not have been used yet, with pages as
// large as it has: fewer of them fit more of a table into the processor's address cache. A hint;
// nothing depends on it being followed. Any thread.
void preferHugePages(void* start, std::size_t bytes);

}  // namespace ombrin
