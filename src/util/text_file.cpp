#include "util/text_file.h"

#include <cinttypes>
#include <cstdint>
#include <new>

#include "util/log.h"

namespace ombrin {

namespace {

constexpr std::size_t FIRST_SIZE = 128;
constexpr LogChannel LOG{"textfile"};

// Holds the stream for a whole line, which is far cheaper than for every character.
class StreamLock {
 public:
  explicit StreamLock(std::FILE* stream) : stream_(stream) { flockfile(stream_); }
  ~StreamLock() { funlockfile(stream_); }
  StreamLock(const StreamLock&) = delete;
  StreamLock& operator=(const StreamLock&) = delete;

 private:
  std::FILE* stream_;
};

}  // namespace

std::optional<std::string_view> TextFile::readLine() {
  std::size_t length = 0;
  const StreamLock lock(stream_);
  while (true) {
    // One byte stays free, as if for a terminator: the sizes in the log are those of C strings.
    if (length + 1 >= buffer_.size() && !grow(length)) return std::nullopt;
    const int c = getc_unlocked(stream_);
    if (c == '\n') {
      if (length > 0 && buffer_[length - 1] == '\r') --length;
      return std::string_view(buffer_).substr(0, length);
    }
    if (c == EOF) {
      if (length == 0) return std::nullopt;
      logInfo(LOG, "EOF n=%zu, size=%zu\n", length, buffer_.size());
      return std::string_view(buffer_).substr(0, length);
    }
    buffer_[length++] = static_cast<char>(c);
  }
}

bool TextFile::grow(std::size_t length) {
  const bool first = buffer_.empty();
  const std::size_t size = first ? FIRST_SIZE : 2 * buffer_.size();
  try {
    buffer_.resize(size);
  } catch (const std::bad_alloc&) {
    logError(LOG, "out of memory allocating %zu bytes\n", size);
    return false;
  }
  if (!first) {
    logInfo(LOG, "Textfile.readline(): reallocced size=%zu addr=%" PRIxPTR ", n=%zu\n", size,
            reinterpret_cast<std::uintptr_t>(buffer_.data()), length);
  }
  return true;
}

bool TextFile::atEnd() {
  return peek() == EOF;
}

int TextFile::peek() {
  const int c = std::getc(stream_);
  return c == EOF ? EOF : std::ungetc(c, stream_);
}

}  // namespace ombrin
