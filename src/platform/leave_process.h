#pragma once

namespace ombrin {

// Ends the process with status 0, at once: nothing is flushed or torn down, and other threads may
// be anywhere. Any thread.
[[noreturn]] void leaveProcess();

}  // namespace ombrin
