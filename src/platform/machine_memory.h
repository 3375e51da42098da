#pragma once

#include <cstdint>

namespace ombrin {

// The machine's memory in bytes, used or not; 0 when the system does not tell. Any thread.
std::uint64_t machineMemory();

}  // namespace ombrin
