#include <semaphore.h>
#include <signal.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "platform/end_request.h"

namespace ombrin {

namespace {

struct Request {
  int signal;
  const char* name;
  bool mayBeIgnored;
};
constexpr std::array<Request, 4> REQUESTS = {{
    {SIGTERM, "terminated", false},
    {SIGINT, "interrupted", true},
    {SIGHUP, "hung up", true},
    // Ignored, as some parents leave it, it would have a search go on whose output goes nowhere.
    {SIGPIPE, "nobody reads the output", false},
}};

// A handler may do next to nothing, so all that it does is to wake the thread that does the rest.
std::atomic<int> requested = 0;
sem_t wakeUp;

void handleSignal(int signal) {
  const int saved = errno;
  requested.store(signal, std::memory_order_relaxed);
  sem_post(&wakeUp);
  errno = saved;
}

void awaitRequest(void (*leave)(const char* why)) {
  while (sem_wait(&wakeUp) != 0) {
  }
  const int signal = requested.load(std::memory_order_relaxed);
  for (const Request& request : REQUESTS) {
    if (request.signal == signal) leave(request.name);
  }
}

}  // namespace

void onEndRequest(void (*leave)(const char* why)) {
  sem_init(&wakeUp, 0, 0);
  try {
    std::thread(awaitRequest, leave).detach();
  } catch (const std::system_error&) {
    return;
  }
  sigset_t handled;
  sigemptyset(&handled);
  for (const Request& request : REQUESTS) {
    struct sigaction action {};
    sigaction(request.signal, nullptr, &action);
    if (request.mayBeIgnored && action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART;
    sigaction(request.signal, &action, nullptr);
    sigaddset(&handled, request.signal);
  }
  // A failed write tells the thread that wrote. Every other signal is left to the waiting thread,
  // the only one that is not busy with anything else.
  sigdelset(&handled, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &handled, nullptr);
}

void ignoreInterrupts() {
  signal(SIGINT, SIG_IGN);
}

}  // namespace ombrin
