#include "platform/thread.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/event.h"

namespace ombrin {
namespace {

TEST(Thread, RunsOnlyOnceResumed) {
  Event ran;
  Thread thread = Thread::createSuspended([&] { ran.set(); });
  ASSERT_TRUE(thread.running());
  EXPECT_FALSE(ran.isSet());
  thread.resume();
  ran.wait();
  thread.join();
  EXPECT_FALSE(thread.running());
}

TEST(Thread, EndsWithoutRunningWhenNeverResumed) {
  std::atomic<int> runs{0};
  {
    const Thread destroyed = Thread::createSuspended([&] { ++runs; });
    Thread joined = Thread::createSuspended([&] { ++runs; });
    joined.join();
    Thread replaced = Thread::createSuspended([&] { ++runs; });
    replaced = Thread();
    EXPECT_FALSE(replaced.running());
  }
  EXPECT_EQ(runs, 0);
}

TEST(Thread, DestructorWaitsForTheFunctionAlsoAfterAMove) {
  std::atomic<bool> finished{false};
  Event leave;
  {
    Thread first = Thread::createSuspended([&] {
      leave.wait();
      finished = true;
    });
    Thread second = std::move(first);
    EXPECT_FALSE(first.running());  // NOLINT(bugprone-use-after-move)
    second.resume();
    first = std::move(second);
    EXPECT_TRUE(first.running());
    leave.set();
  }
  EXPECT_TRUE(finished);
}

TEST(Thread, BelowNormalIsOneStepAndOnlyForThatThread) {
  const int normal = getpriority(PRIO_PROCESS, 0);
  int lowered = 0;
  int untouched = 0;
  Thread low = Thread::createSuspended([&] { lowered = getpriority(PRIO_PROCESS, 0); });
  Thread plain = Thread::createSuspended([&] { untouched = getpriority(PRIO_PROCESS, 0); });
  low.setPriority(ThreadPriority::BELOW_NORMAL);
  low.resume();
  plain.resume();
  low.join();
  plain.join();
  EXPECT_EQ(lowered, std::min(normal + 1, 19));
  EXPECT_EQ(untouched, normal);
  EXPECT_EQ(getpriority(PRIO_PROCESS, 0), normal);
}

TEST(Event, StaysSetUntilResetAndLetsEveryWaiterPass) {
  Event event;
  std::atomic<int> passed{0};
  int written = 0;
  const auto waiter = [&] {
    event.wait();
    if (written == 7) ++passed;
  };
  Thread threads[] = {Thread::createSuspended(waiter), Thread::createSuspended(waiter),
                      Thread::createSuspended(waiter)};
  for (Thread& thread : threads) thread.resume();
  written = 7;
  event.set();
  for (Thread& thread : threads) thread.join();
  EXPECT_EQ(passed, 3);
  EXPECT_TRUE(event.isSet());
  event.wait();
  event.reset();
  EXPECT_FALSE(event.isSet());
}

}  // namespace
}  // namespace ombrin
