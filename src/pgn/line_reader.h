#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgn/byte_source.h"

namespace ombrin {

// The lines of a text, whichever way they end: LF, CR LF or CR. A byte-order mark of UTF-8 in front
// of a line is left out. Text in UTF-16 is refused: it has no lines, and problem() says so. One
// thread at a time.
class LineReader {
 public:
  // The source must live as long as this.
  explicit LineReader(ByteSource& source) : source_(source) {}

  // The next line without its end, valid until the next call of anything here; nothing at the end.
  // A line above the largest size comes in pieces. Blocks for as long as the source does.
  std::optional<std::string_view> next();
  // Is there nothing left? Blocks as next() does.
  bool atEnd();
  // Does the next line start so? No longer than FIRST_LOOK. Blocks as next() does.
  bool nextStartsWith(std::string_view start);

  // Bytes taken from the file so far.
  std::uint64_t consumed() const { return source_.consumed(); }
  // Why the text ended before its end; empty when it did not.
  std::string problem() const { return isWide_ ? WIDE : source_.problem(); }

 private:
  static constexpr std::size_t FIRST_LOOK = 16;
  static constexpr std::size_t FIRST_SIZE = std::size_t{1} << 18;
  static constexpr std::size_t LARGEST_LINE = std::size_t{1} << 24;
  static constexpr const char* WIDE = "the text is in UTF-16; it has to be in UTF-8 or Latin-1";

  bool fill();
  bool has(std::size_t count);
  std::size_t find(char c, std::size_t from) const;
  void skipMark();
  std::string_view take(std::size_t end, std::size_t next);

  ByteSource& source_;
  std::vector<char> buffer_;
  // What has not been handed out: from begin_ to end_.
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  // The first of each behind begin_, or end_; looked for again when it lies before begin_.
  std::size_t feed_ = 0;
  std::size_t carriage_ = 0;
  bool atSourceEnd_ = false;
  bool isWide_ = false;
};

}  // namespace ombrin
