#include "util/print.h"

#include "util/format.h"

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
  const FormattedText text(format, arguments);
  std::fwrite(text.view().data(), 1, text.view().size(), stream);
}

}  // namespace ombrin
