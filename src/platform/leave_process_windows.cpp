#include <windows.h>

#include <cstdlib>

#include "platform/leave_process.h"

namespace ombrin {

// The C library's way would first stop the other threads, with whatever locks they hold, and then
// let every loaded library clean up after itself.
void leaveProcess() {
  TerminateProcess(GetCurrentProcess(), EXIT_SUCCESS);
  std::abort();
}

}  // namespace ombrin
