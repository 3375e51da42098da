// A manual-reset event: a flag that threads can wait for.
#pragma once

#include <condition_variable>
#include <mutex>

namespace ombrin {

// Made not signalled. Once set, it stays signalled and lets every waiter pass until it is reset.
// All operations may be called from any thread; what a thread wrote before set() is visible to a
// thread that returns from wait() or saw isSet() true.
class Event {
 public:
  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void set();
  void reset();
  // Blocks, without a time-out, until the event is signalled; returns at once when it is.
  void wait() const;
  bool isSet() const;

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  bool signalled_ = false;
};

}  // namespace ombrin
