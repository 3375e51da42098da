#pragma once

#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

namespace ombrin {

// Reads lines of any length from a C stream, which its opener closes. CR LF is one line end; a lone
// CR stays in the line, and so does a NUL byte. One thread at a time.
class TextFile {
 public:
  explicit TextFile(std::FILE* stream) : stream_(stream) {}

  // The next line without its line end, valid until the next call; nothing at the end of the input,
  // or when there is no memory for the line. A last line without a line end is a line. Blocks for
  // as long as the stream does.
  std::optional<std::string_view> readLine();

  // True when there is nothing left to read. Blocks as readLine() does.
  bool atEnd() { return peek() == EOF; }
  // The next character without reading it, or EOF. Blocks as readLine() does.
  int peek();

 private:
  bool grow(std::size_t length);

  std::FILE* stream_;
  std::vector<char> buffer_;
};

}  // namespace ombrin
