#pragma once

namespace ombrin {

// Ends the process at once with exit status 0: what was written is flushed, files that are not
// complete are removed, nothing is destroyed,
// so a search may be running and no thread finds anything torn down under it. Never waits longer
// than a moment, not even for a reader that has stopped reading. The log's last line says `why`,
// unless that is none. Any thread.
[[noreturn]] void endProcess(const char* why = nullptr);

}  // namespace ombrin
