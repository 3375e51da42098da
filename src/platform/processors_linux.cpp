#include <sched.h>

#include <array>
#include <thread>

#include "platform/processors.h"

namespace ombrin {

int processorCount() {
  // One cpu_set_t holds 1024 processors; the kernel refuses a mask that is smaller than its own.
  std::array<cpu_set_t, 16> mask{};
  if (sched_getaffinity(0, sizeof(mask), mask.data()) == 0) {
    return CPU_COUNT_S(sizeof(mask), mask.data());
  }
  return static_cast<int>(std::thread::hardware_concurrency());
}

}  // namespace ombrin
