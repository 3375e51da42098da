#include "protocol/output_stream.h"

#include "util/print.h"

namespace ombrin {

void OutputStream::print(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  vprint(format, arguments);
  va_end(arguments);
}

void FileOutputStream::flush() {
  std::fflush(stream_);
}

void FileOutputStream::putChar(char character) {
  std::fputc(character, stream_);
}

void FileOutputStream::putString(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream_);
}

void FileOutputStream::vprint(const char* format, std::va_list arguments) {
  ombrin::vprint(stream_, format, arguments);
}

}  // namespace ombrin
