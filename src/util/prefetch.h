#pragma once

namespace ombrin {

// Asks for the cache line that holds the address, ahead of its use. Any address will do, mapped or
// not; any thread.
inline void prefetch(const void* address) {
  __builtin_prefetch(address);
  // To g++ a function that only prefetches has no effect, and it drops the calls of it. This has.
  asm volatile("");
}

}  // namespace ombrin
