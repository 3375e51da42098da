#include "util/print.h"

namespace ombrin {

void print(std::FILE* stream, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  vprint(stream, format, arguments);
  va_end(arguments);
}

void vprint(std::FILE* stream, const char* format, std::va_list arguments) {
  // The C library locks the stream for the whole call, which keeps the text in one piece.
  if (stream != nullptr) std::vfprintf(stream, format, arguments);
}

}  // namespace ombrin
