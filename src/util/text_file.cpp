#include "util/text_file.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstring>

#include "util/log.h"

namespace ombrin {

namespace {

constexpr std::size_t FIRST_SIZE = 128;
// The most that is read at once: one long line must not make every line after it cost as much.
constexpr std::size_t PIECE = 1024;
// A line that needs more is no text: a file of gigabytes without a line end must not be loaded.
constexpr std::size_t LARGEST_SIZE = std::size_t{1} << 28;
constexpr LogChannel LOG{"textfile"};

}  // namespace

std::optional<std::string_view> TextFile::readLine() {
  std::size_t length = 0;
  while (true) {
    // One byte stays free, for the terminator.
    if (length + 1 >= buffer_.size() && !grow(length)) return std::nullopt;
    const std::size_t before = length;
    const bool complete = readPiece(length);
    if (complete) {
      if (length > 0 && buffer_[length - 1] == '\r') --length;
      return std::string_view(buffer_).substr(0, length);
    }
    if (length == before || std::feof(stream_) != 0) {
      if (length == 0) return std::nullopt;
      logInfo(LOG, "EOF n=%zu, size=%zu\n", length, buffer_.size());
      return std::string_view(buffer_).substr(0, length);
    }
  }
}

// Reads on behind `length`, which then counts what was read, up to the line end, the end of the
// piece or of the input. True when the line is complete; its line feed does not count.
//
// The C library's line read is fast and does not say how much it has read, and a NUL byte of the
// input looks like its terminator. So the room is filled with line feeds first: the first one
// found is the line's own if the terminator follows it, else it is filling and the terminator
// stands before it.
bool TextFile::readPiece(std::size_t& length) {
  char* const room = buffer_.data() + length;
  const std::size_t size = std::min(buffer_.size() - length, PIECE);
  std::memset(room, '\n', size);
  if (std::fgets(room, static_cast<int>(size), stream_) == nullptr) return false;
  const auto* const end = static_cast<const char*>(std::memchr(room, '\n', size));
  if (end == nullptr) {
    length += size - 1;
    return false;
  }
  const auto found = static_cast<std::size_t>(end - room);
  const bool complete = found + 1 < size && room[found + 1] == '\0';
  length += complete ? found : found - 1;
  return complete;
}

bool TextFile::grow(std::size_t length) {
  const bool first = buffer_.empty();
  const std::size_t size = first ? FIRST_SIZE : 2 * buffer_.size();
  if (size > LARGEST_SIZE) {
    logError(LOG, "out of memory allocating %zu bytes\n", size);
    return false;
  }
  buffer_.resize(size);
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
