#include "util/log.h"

#include <cstdarg>

#include "util/print.h"

namespace ombrin {

std::atomic<std::FILE*> logFile{stdout};
std::atomic<int> logLevel{1};

namespace {

void logAt(int level, const char* format, std::va_list arguments) OMBRIN_PRINTF_FORMAT(2, 0);

void logAt(int level, const char* format, std::va_list arguments) {
  if (logLevel.load() <= level) vprint(logFile.load(), format, arguments);
}

}  // namespace

void logDebug(const LogChannel& /*channel*/, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(0, format, arguments);
  va_end(arguments);
}

void logInfo(const LogChannel& /*channel*/, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(1, format, arguments);
  va_end(arguments);
}

void logWarn(const LogChannel& /*channel*/, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(2, format, arguments);
  va_end(arguments);
}

void logError(const LogChannel& /*channel*/, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  logAt(3, format, arguments);
  va_end(arguments);
}

void flushLog() {
  std::FILE* const stream = logFile.load();
  if (stream != nullptr) std::fflush(stream);
}

}  // namespace ombrin
