#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace ombrin {

// Reads lines of up to a quarter of a gigabyte from a C stream, which its opener closes. CR LF is
// one line end; a lone CR stays in the line, and so does a NUL byte. One thread at a time.
// Running out of memory ends the process.
class TextFile {
 public:
  explicit TextFile(std::FILE* stream) : stream_(stream) {}

  // The next line without its line end, valid until the next call; nothing at the end of the input,
  // on a read error, or when the line is longer than that. A last line without a line end is a
  // line. Blocks for as long as the stream does.
  std::optional<std::string_view> readLine();

  // True when there is nothing left to read. Blocks as readLine() does.
  bool atEnd();
  // The next character without reading it, or EOF. Blocks as readLine() does.
  int peek();

 private:
  bool grow(std::size_t length);
  bool readPiece(std::size_t& length);

  std::FILE* stream_;
  std::string buffer_;
};

}  // namespace ombrin
