// Instructions that not every processor has, with what is done on the others.
#pragma once

namespace ombrin {

// Asks for the cache line that holds the address, ahead of its use. Any address will do, mapped or
// not; any thread. A hint.
inline void prefetch(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
  // To g++ a function that only prefetches has no effect, and it drops the calls of it. This has.
  asm volatile("");
#else
  static_cast<void>(address);
#endif
}

// What a thread does in each turn of a loop that waits for another thread: it leaves the core's
// resources to its sibling. A hint.
inline void pauseThread() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

// Nearly every x86 processor has an instruction that counts bits, but a program for all of them
// must ask for it before it uses it. A function that is marked OMBRIN_COUNTS_BITS has the
// instruction for itself and for what is inlined into it, and may be called when countsBits() says
// so. Built for one processor, or for another kind, nothing needs to be asked: the compiler knows.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(__POPCNT__)
#define OMBRIN_COUNTS_BITS gnu::target("popcnt")
inline bool countsBits() {
  return __builtin_cpu_supports("popcnt") != 0;
}
#else
#define OMBRIN_COUNTS_BITS
constexpr bool countsBits() {
  return true;
}
#endif

}  // namespace ombrin
