#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "pgn/byte_source.h"

namespace ombrin {

// A file, read in blocks that can be looked at before they are taken.
class FileSource : public ByteSource {
 public:
  // Takes the stream over; standard input is left open.
  explicit FileSource(std::FILE* stream);

  std::size_t read(std::span<char> room) override;
  std::uint64_t consumed() const override { return fetched_ - (end_ - begin_); }
  std::string problem() const override;

  // What has been fetched and not been taken; nothing only at the end.
  std::span<const char> peek();
  void take(std::size_t count) { begin_ += count; }

 private:
  struct Closer {
    void operator()(std::FILE* stream) const {
      if (stream != stdin) std::fclose(stream);
    }
  };

  std::unique_ptr<std::FILE, Closer> stream_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::uint64_t fetched_ = 0;
};

// Opens a file for reading, or standard input, whose name is "-"; what is compressed comes out
// plain. Null when that is not possible; `problem` then says why, and nothing when there is no such
// file.
std::unique_ptr<ByteSource> openSource(const std::string& name, std::string& problem);

}  // namespace ombrin
