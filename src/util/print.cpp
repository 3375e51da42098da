#include "util/print.h"

#include <array>
#include <string>

namespace ombrin {

void print(std::FILE* stream, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  vprint(stream, format, arguments);
  va_end(arguments);
}

// Formatted first and written by one call, which locks the stream: that keeps the text in one
// piece, and some C libraries send every character on its own when they format straight into an
// unbuffered stream.
void vprint(std::FILE* stream, const char* format, std::va_list arguments) {
  if (stream == nullptr) return;
  std::array<char, 1024> shortText;
  std::string longText;
  char* text = shortText.data();
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(text, shortText.size(), format, arguments);
  if (length >= static_cast<int>(shortText.size())) {
    longText.resize(static_cast<std::size_t>(length));
    text = longText.data();
    std::vsnprintf(text, longText.size() + 1, format, again);
  }
  va_end(again);
  if (length > 0) std::fwrite(text, 1, static_cast<std::size_t>(length), stream);
}

}  // namespace ombrin
