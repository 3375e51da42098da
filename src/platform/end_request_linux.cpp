#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
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

// A handler may do next to nothing, so all that it does is to write the request's index to a pipe
// that a thread reads: D. J. Bernstein's self-pipe.
int requestsIn = -1;

void handleSignal(int signal) {
  const int saved = errno;
  for (std::size_t i = 0; i < REQUESTS.size(); ++i) {
    if (REQUESTS[i].signal != signal) continue;
    const auto index = static_cast<unsigned char>(i);
    // The pipe is never full where it matters: the first request ends the program.
    [[maybe_unused]] const ssize_t written = write(requestsIn, &index, 1);
  }
  errno = saved;
}

}  // namespace

void onEndRequest(void (*leave)(const char* why)) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  requestsIn = ends[1];
  try {
    std::thread([leave, out = ends[0]] {
      unsigned char index = 0;
      while (read(out, &index, 1) != 1) {
      }
      leave(REQUESTS[index].name);
    }).detach();
  } catch (const std::system_error&) {
    return;
  }
  for (const Request& request : REQUESTS) {
    struct sigaction action {};
    sigaction(request.signal, nullptr, &action);
    if (request.mayBeIgnored && action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART;
    sigaction(request.signal, &action, nullptr);
  }
}

}  // namespace ombrin
