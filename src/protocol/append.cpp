#include "protocol/append.h"

#include <cstdio>

namespace ombrin {

void append(std::string& text, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  vappend(text, format, arguments);
  va_end(arguments);
}

void vappend(std::string& text, const char* format, std::va_list arguments) {
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length <= 0) return;
  const std::size_t old = text.size();
  text.resize(old + static_cast<std::size_t>(length) + 1);  // room for the terminator
  std::vsnprintf(text.data() + old, static_cast<std::size_t>(length) + 1, format, arguments);
  text.pop_back();
}

}  // namespace ombrin
