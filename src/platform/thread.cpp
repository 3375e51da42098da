#include "platform/thread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <system_error>
#include <thread>

#include "platform/event.h"

namespace ombrin {

namespace {

// The kernel keeps a nice value per thread, and 1 is the smallest step below normal.
void lowerOwnPriority() {
  const auto self = static_cast<id_t>(gettid());
  setpriority(PRIO_PROCESS, self, getpriority(PRIO_PROCESS, self) + 1);
}

}  // namespace

struct Thread::State {
  std::function<void()> entry;
  Event resumed;
  std::atomic<bool> abandoned{false};
  std::atomic<ThreadPriority> priority{ThreadPriority::NORMAL};
  std::thread thread;
};

Thread::Thread() = default;
Thread::Thread(Thread&&) noexcept = default;

Thread& Thread::operator=(Thread&& other) noexcept {
  if (this != &other) {
    Thread old(std::move(*this));
    state_ = std::move(other.state_);
  }
  return *this;
}

Thread::~Thread() {
  if (!running()) return;
  if (!state_->resumed.isSet()) {
    state_->abandoned = true;
    state_->resumed.set();
  }
  join();
}

Thread Thread::createSuspended(std::function<void()> entry) {
  Thread made;
  made.state_ = std::make_unique<State>();
  State* state = made.state_.get();
  state->entry = std::move(entry);
  try {
    state->thread = std::thread([state] {
      state->resumed.wait();
      if (state->abandoned) return;
      if (state->priority == ThreadPriority::BELOW_NORMAL) lowerOwnPriority();
      state->entry();
    });
  } catch (const std::system_error&) {
    made.state_.reset();
  }
  return made;
}

bool Thread::running() const {
  return state_ != nullptr;
}

void Thread::setPriority(ThreadPriority priority) {
  state_->priority = priority;
}

void Thread::resume() {
  state_->resumed.set();
}

void Thread::join() {
  state_->thread.join();
  state_.reset();
}

}  // namespace ombrin
