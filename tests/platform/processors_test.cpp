#include "platform/processors.h"

#include <gtest/gtest.h>
#include <sched.h>

#include "platform/thread.h"
#include "platform/tick.h"

namespace ombrin {
namespace {

TEST(Processors, CountsOnlyThoseTheProcessMayUse) {
  EXPECT_GE(processorCount(), 1);
  // The mask belongs to the thread, so a thread of its own leaves the program's mask alone.
  int restricted = 0;
  Thread thread = Thread::createSuspended([&] {
    cpu_set_t mask;
    CPU_ZERO(&mask);
    CPU_SET(sched_getcpu(), &mask);
    if (sched_setaffinity(0, sizeof(mask), &mask) == 0) restricted = processorCount();
  });
  thread.resume();
  thread.join();
  EXPECT_EQ(restricted, 1);
}

TEST(Tick, NeverGoesBack) {
  const std::uint64_t first = tickCount();
  std::uint64_t last = first;
  while (last < first + 3) {
    const std::uint64_t now = tickCount();
    ASSERT_GE(now, last);
    last = now;
  }
}

}  // namespace
}  // namespace ombrin
