#pragma once

#include <string>

namespace ombrin {

// Writes the positions of both books to `result`; where both know a position, the master's moves
// alone. Reports on standard output. True when the result is complete under its name.
bool mergeBooks(const std::string& master, const std::string& secondary, const std::string& result);

}  // namespace ombrin
