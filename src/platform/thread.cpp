#include "platform/thread.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/thread_priority.h"

namespace ombrin {

namespace {

enum class Gate { CLOSED, OPEN, CANCELLED };

}  // namespace

// The new thread waits at the gate until resume() opens it or join() cancels it.
struct Thread::State {
  std::function<void()> entry;
  std::mutex mutex;
  std::condition_variable gateChanged;
  Gate gate = Gate::CLOSED;
  ThreadPriority priority = ThreadPriority::NORMAL;
  std::thread thread;

  void run() {
    ThreadPriority wanted = ThreadPriority::NORMAL;
    {
      std::unique_lock lock(mutex);
      gateChanged.wait(lock, [this] { return gate != Gate::CLOSED; });
      if (gate == Gate::CANCELLED) return;
      wanted = priority;
    }
    if (wanted == ThreadPriority::BELOW_NORMAL) stepBelowNormal();
    entry();
  }

  // Only the first call moves the gate.
  void moveGate(Gate to) {
    const std::lock_guard lock(mutex);
    if (gate == Gate::CLOSED) gate = to;
    gateChanged.notify_all();
  }
};

Thread::Thread() = default;

Thread::Thread(Thread&&) noexcept = default;

Thread& Thread::operator=(Thread&& other) noexcept {
  if (this != &other) {
    join();
    state_ = std::move(other.state_);
  }
  return *this;
}

Thread::~Thread() {
  join();
}

Thread Thread::createSuspended(std::function<void()> entry) {
  Thread result;
  const auto state = std::make_shared<State>();
  state->entry = std::move(entry);
  try {
    // The object is not moved while the thread runs: it stays behind the shared pointer, which
    // join() releases only after the thread has ended.
    state->thread = std::thread([running = state.get()] { running->run(); });
    result.state_ = state;
  } catch (const std::system_error&) {
    return result;
  }
  return result;
}

bool Thread::running() const {
  return state_ != nullptr;
}

void Thread::setPriority(ThreadPriority priority) {
  if (state_ == nullptr) return;
  const std::lock_guard lock(state_->mutex);
  state_->priority = priority;
}

void Thread::resume() {
  if (state_ != nullptr) state_->moveGate(Gate::OPEN);
}

void Thread::join() {
  if (state_ == nullptr) return;
  state_->moveGate(Gate::CANCELLED);
  state_->thread.join();
  state_.reset();
}

}  // namespace ombrin
