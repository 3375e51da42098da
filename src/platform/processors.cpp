#include "platform/processors.h"

#include <sched.h>

namespace ombrin {

int processorCount() {
  cpu_set_t set;
  CPU_ZERO(&set);
  return sched_getaffinity(0, sizeof set, &set) == 0 ? CPU_COUNT(&set) : 0;
}

}  // namespace ombrin
