#include "platform/event.h"

namespace ombrin {

void Event::set() {
  // Notifying under the lock lets a waiter destroy the event as soon as wait() has returned.
  const std::lock_guard lock(mutex_);
  signalled_ = true;
  changed_.notify_all();
}

void Event::reset() {
  const std::lock_guard lock(mutex_);
  signalled_ = false;
}

void Event::wait() const {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return signalled_; });
}

bool Event::isSet() const {
  const std::lock_guard lock(mutex_);
  return signalled_;
}

}  // namespace ombrin
