#include <windows.h>

#include "platform/processors.h"

namespace ombrin {

int processorCount() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return static_cast<int>(info.dwNumberOfProcessors);
}

}  // namespace ombrin
