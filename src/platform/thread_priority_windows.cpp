#include <windows.h>

#include "platform/thread_priority.h"

namespace ombrin {

void stepBelowNormal() {
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

}  // namespace ombrin
