#include "platform/event.h"

namespace ombrin {

void Event::set() {
  const std::lock_guard<std::mutex> lock(mutex_);
  signalled_ = true;
  changed_.notify_all();
}

void Event::reset() {
  const std::lock_guard<std::mutex> lock(mutex_);
  signalled_ = false;
}

void Event::wait() const {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return signalled_; });
}

bool Event::isSet() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return signalled_;
}

}  // namespace ombrin
