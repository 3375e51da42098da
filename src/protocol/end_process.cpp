#include "protocol/end_process.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include "platform/leave_process.h"
#include "platform/thread.h"
#include "util/log.h"
#include "util/temporary_files.h"

namespace ombrin {

namespace {

constexpr LogChannel LOG{"shell"};

}  // namespace

void endProcess(const char* why) {
  // A search thread that is stuck in a write holds the lock of that stream, and flushing waits for
  // it: so the patience is limited.
  static constexpr std::chrono::milliseconds PATIENCE(300);
  Thread impatient = Thread::createSuspended([] {
    std::this_thread::sleep_for(PATIENCE);
    leaveProcess();
  });
  if (impatient.running()) impatient.resume();
  if (why != nullptr) logInfo(LOG, "leaving: %s\n", why);
  removeTemporaryFiles();
  std::fflush(stdout);
  flushLog();
  leaveProcess();
}

}  // namespace ombrin
