#pragma once

#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "platform/printf_format.h"

namespace ombrin {

// A sink for text. Takes no lock of its own: whoever shares one among threads holds a lock for each
// line. Write errors are ignored; a reader that has gone away is noticed at the end of the input.
class OutputStream {
 public:
  OutputStream() = default;
  OutputStream(const OutputStream&) = delete;
  OutputStream& operator=(const OutputStream&) = delete;
  virtual ~OutputStream() = default;

  virtual void flush() = 0;
  virtual void putChar(char character) = 0;
  virtual void putString(std::string_view text) = 0;
  virtual void vprint(const char* format, std::va_list arguments) OMBRIN_PRINTF_FORMAT(2, 0) = 0;

  void print(const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
};

// Forwards to a C stream, which its opener closes.
class FileOutputStream final : public OutputStream {
 public:
  explicit FileOutputStream(std::FILE* stream) : stream_(stream) {}

  void flush() override;
  void putChar(char character) override;
  void putString(std::string_view text) override;
  void vprint(const char* format, std::va_list arguments) override OMBRIN_PRINTF_FORMAT(2, 0);

 private:
  std::FILE* stream_;
};

}  // namespace ombrin
