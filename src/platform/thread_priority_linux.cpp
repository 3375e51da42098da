#include <sys/resource.h>

#include <cerrno>

#include "platform/thread_priority.h"

namespace ombrin {

// Linux keeps one nice value per thread, and 0 names the calling one.
void stepBelowNormal() {
  errno = 0;
  const int nice = getpriority(PRIO_PROCESS, 0);
  if (nice == -1 && errno != 0) return;
  setpriority(PRIO_PROCESS, 0, nice + 1);
}

}  // namespace ombrin
