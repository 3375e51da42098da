#include "util/format.h"

#include <cstdio>

namespace ombrin {

FormattedText::FormattedText(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(room_.data(), room_.size(), format, arguments);
  const auto size = length > 0 ? static_cast<std::size_t>(length) : 0;
  if (size < room_.size()) {
    view_ = {room_.data(), size};
  } else {
    longText_.resize(size);
    std::vsnprintf(longText_.data(), size + 1, format, again);
    view_ = longText_;
  }
  va_end(again);
}

void append(std::string& text, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  vappend(text, format, arguments);
  va_end(arguments);
}

void vappend(std::string& text, const char* format, std::va_list arguments) {
  text += FormattedText(format, arguments).view();
}

}  // namespace ombrin
