// A thread that is made suspended and can be given a lower priority before it runs.
#pragma once

#include <functional>
#include <memory>

namespace ombrin {

enum class ThreadPriority { NORMAL, BELOW_NORMAL };

// Owns one thread. The destructor waits for the thread's function to return, so whoever owns the
// object must first make it return. A thread that was never resumed ends without running it.
class Thread {
 public:
  Thread();  // no thread
  Thread(Thread&&) noexcept;
  Thread& operator=(Thread&&) noexcept;
  ~Thread();

  // Makes a thread that runs `entry` once it is resumed. When the system has no thread to give,
  // the result is not running().
  static Thread createSuspended(std::function<void()> entry);

  // True from createSuspended() until join().
  bool running() const;

  // Takes effect when the thread is resumed; a system that refuses leaves the priority as it is.
  // BELOW_NORMAL is the smallest step below normal that the system has.
  void setPriority(ThreadPriority priority);

  // Lets the thread run. Only once.
  void resume();

  // Blocks until the thread has ended; one that was not resumed ends now.
  void join();

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace ombrin
