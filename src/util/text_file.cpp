#include "util/text_file.h"

#include <new>

#include "util/log.h"

namespace ombrin {

namespace {

constexpr LogChannel CHANNEL{"textfile"};
constexpr std::size_t FIRST_SIZE = 128;

}  // namespace

std::optional<std::string_view> TextFile::readLine() {
  if (buffer_.empty()) buffer_.resize(FIRST_SIZE);
  std::size_t length = 0;
  for (;;) {
    const int c = std::getc(stream_);
    if (c == EOF) {
      if (length == 0) return std::nullopt;
      logInfo(CHANNEL, "EOF n=%zu, size=%zu\n", length, buffer_.size());
      return std::string_view(buffer_.data(), length);
    }
    if (c == '\n') {
      if (length > 0 && buffer_[length - 1] == '\r') --length;
      return std::string_view(buffer_.data(), length);
    }
    buffer_[length++] = static_cast<char>(c);
    // One byte stays free, as it did when lines were C strings; the log's numbers tell of it.
    if (length + 1 == buffer_.size() && !grow(length)) return std::nullopt;
  }
}

int TextFile::peek() {
  const int c = std::getc(stream_);
  return c == EOF ? EOF : std::ungetc(c, stream_);
}

bool TextFile::grow(std::size_t length) {
  const std::size_t size = 2 * buffer_.size();
  try {
    buffer_.resize(size);
  } catch (const std::bad_alloc&) {
    logError(CHANNEL, "out of memory allocating %zu bytes\n", size);
    return false;
  }
  logInfo(CHANNEL, "Textfile.readline(): reallocced size=%zu addr=%zx, n=%zu\n", size,
          reinterpret_cast<std::size_t>(buffer_.data()), length);
  return true;
}

}  // namespace ombrin
