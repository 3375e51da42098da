#include <windows.h>

#include "platform/machine_memory.h"

namespace ombrin {

std::uint64_t machineMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof(status);
  return GlobalMemoryStatusEx(&status) != 0 ? status.ullTotalPhys : 0;
}

}  // namespace ombrin
