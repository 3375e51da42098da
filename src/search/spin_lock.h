#pragma once

#include <atomic>
#include <thread>

#include "platform/instructions.h"

namespace ombrin {

// What a thread does between two looks at something it waits for: it leaves the processor's
// resources to its sibling at first, and the processor to other threads when it takes longer, so
// that more threads than processors slow each other down but never stand still.
class SpinWait {
 public:
  void pause() {
    if (turns_ < PATIENCE) {
      ++turns_;
      pauseThread();
    } else {
      std::this_thread::yield();
    }
  }

 private:
  static constexpr int PATIENCE = 100;
  int turns_ = 0;
};

// A lock for a few instructions. Use with std::lock_guard or std::unique_lock.
class SpinLock {
 public:
  void lock() {
    for (SpinWait wait; !try_lock(); wait.pause()) {
    }
  }
  // Acquire: what the holder before wrote is visible. Looking first keeps the line shared
  // meanwhile.
  bool try_lock() {
    return !held_.load(std::memory_order_relaxed) &&
           !held_.exchange(true, std::memory_order_acquire);
  }
  // Release: hands on what was written under the lock.
  void unlock() { held_.store(false, std::memory_order_release); }

 private:
  std::atomic<bool> held_{false};
};

}  // namespace ombrin
