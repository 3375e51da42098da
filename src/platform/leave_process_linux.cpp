#include <cstdlib>

#include "platform/leave_process.h"

namespace ombrin {

void leaveProcess() {
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace ombrin
