#include "util/log.h"

#include <cstdarg>

#include "util/print.h"

namespace ombrin {

std::atomic<std::FILE*> logFile{stdout};
std::atomic<int> logLevel{1};

namespace {

// Acquire: the stream's own state, made by the thread that opened it, is needed too. The level is a
// number that nothing else hangs on.
__attribute__((format(printf, 2, 0))) void logAt(int level, const char* format,
                                                 std::va_list arguments) {
  if (logLevel.load(std::memory_order_relaxed) > level) return;
  vprint(logFile.load(std::memory_order_acquire), format, arguments);
}

}  // namespace

void logDebug(const LogChannel&, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(0, format, arguments);
  va_end(arguments);
}

void logInfo(const LogChannel&, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(1, format, arguments);
  va_end(arguments);
}

void logWarn(const LogChannel&, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(2, format, arguments);
  va_end(arguments);
}

void logError(const LogChannel&, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(3, format, arguments);
  va_end(arguments);
}

void flushLog() {
  if (std::FILE* stream = logFile.load(std::memory_order_acquire)) std::fflush(stream);
}

}  // namespace ombrin
