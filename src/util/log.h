// Levelled log channels, all writing to one shared stream.
#pragma once

#include <atomic>
#include <cstdio>

#include "platform/printf_format.h"

namespace ombrin {

// The shared stream: standard output at start, null while logging is off. Whoever opens a file
// owns it; a replaced file stays open, because another thread may be writing to it.
extern std::atomic<std::FILE*> logFile;

// 1 at start: logDebug is silent, the three above it print.
extern std::atomic<int> logLevel;

// Names the subsystem that a call site logs for. Neither printed nor a filter.
struct LogChannel {
  const char* name;
};

// Each writes the formatted text and nothing else (no prefix, no line end, no flush) when logLevel
// is at most 0, 1, 2 or 3 respectively and logFile is not null. Any thread; a text is one piece.
void logDebug(const LogChannel& channel, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void logInfo(const LogChannel& channel, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void logWarn(const LogChannel& channel, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void logError(const LogChannel& channel, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);

// Writes out what the stream has buffered.
void flushLog();

}  // namespace ombrin
