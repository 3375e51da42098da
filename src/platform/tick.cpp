#include "platform/tick.h"

#include <chrono>

namespace ombrin {

std::uint64_t tickCount() {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

}  // namespace ombrin
