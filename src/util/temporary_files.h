// Files that are only there until the work on them is done, or the process ends.
#pragma once

#include <string>
#include <string_view>

namespace ombrin {

// Makes an empty file whose name nobody else has, `target` with more behind it, and returns the
// name; empty when that is not possible. Any thread.
std::string makeTemporaryFile(std::string_view target);

// The file has another name now, or is gone. Any thread.
void forgetTemporaryFile(const std::string& name);

// Removes all that are left. For the end of the process: nobody can make or forget one afterwards,
// whoever tries waits for ever. Any thread.
void removeTemporaryFiles();

}  // namespace ombrin
