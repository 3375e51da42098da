#include <windows.h>

#include <bit>

#include "platform/processors.h"

namespace ombrin {

int processorCount() {
  DWORD_PTR ours = 0;
  DWORD_PTR all = 0;
  // The mask is empty when the process has threads in several groups of processors.
  if (GetProcessAffinityMask(GetCurrentProcess(), &ours, &all) != 0 && ours != 0) {
    return std::popcount(ours);
  }
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return static_cast<int>(info.dwNumberOfProcessors);
}

}  // namespace ombrin
