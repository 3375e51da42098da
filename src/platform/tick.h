// The millisecond clock behind all timing, time stamps and the random seed.
#pragma once

#include <cstdint>

namespace ombrin {

// Milliseconds of a clock that never goes back, counted from some moment before the program
// started. 64 bits wide, so it does not wrap. Any thread; cannot fail.
std::uint64_t tickCount();

}  // namespace ombrin
