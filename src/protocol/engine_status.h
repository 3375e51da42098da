#pragma once

#include <mutex>
#include <utility>

namespace ombrin {

// What a front-end's engine is doing, as far as the two threads that decide about it know: the
// command thread and the search thread. Every decision is one replace(), whose result selects the
// branch, so that of two threads that meet exactly one takes it. Nothing is printed, and no other
// lock taken, while the status lock is held.
template <typename Status>
class EngineStatus {
 public:
  // Stores the new status and returns the one it replaces.
  Status replace(Status next) {
    const std::lock_guard lock(mutex_);
    return std::exchange(status_, next);
  }

  // The same, where the new one depends on the old one: next(old).
  template <typename Next>
  Status change(Next next) {
    const std::lock_guard lock(mutex_);
    return std::exchange(status_, next(status_));
  }

  // For log lines and assertions; it may be out of date at once.
  Status current() const {
    const std::lock_guard lock(mutex_);
    return status_;
  }

 private:
  mutable std::mutex mutex_;
  Status status_ = Status::IDLE;
};

// A search that has ended by itself while the client may not hear it yet, pondering or analysing
// without end, is HELD_BACK.
enum class UciStatus { IDLE, POSITION, SEARCHING, PONDERING, ANALYZING, HELD_BACK };
enum class WinboardStatus { IDLE, SEARCHING, PONDERING };

// As trace and log lines name it.
const char* statusName(UciStatus status);
const char* statusName(WinboardStatus status);

}  // namespace ombrin
