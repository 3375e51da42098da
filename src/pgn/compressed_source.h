#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "pgn/decoder.h"
#include "pgn/file_source.h"

namespace ombrin {

// A way in which files are compressed.
struct Compression {
  std::string_view mark;  // with which the files begin
  std::string_view ending;
  const char* library;
  std::unique_ptr<Decoder> (*makeDecoder)();
};

// By the first bytes of a file; null for a plain one.
const Compression* compressionOf(std::string_view start);
// By the ending of its name, which is in lower case; null for a plain one.
const Compression* compressionOfName(std::string_view name);

// What a compressed file holds.
class CompressedSource : public ByteSource {
 public:
  CompressedSource(std::unique_ptr<FileSource> file, std::unique_ptr<Decoder> decoder)
      : file_(std::move(file)), decoder_(std::move(decoder)) {}

  std::size_t read(std::span<char> room) override;
  std::uint64_t consumed() const override { return file_->consumed(); }
  std::string problem() const override;

 private:
  std::unique_ptr<FileSource> file_;
  std::unique_ptr<Decoder> decoder_;
  bool inPart_ = true;
  const char* problem_ = "";
};

}  // namespace ombrin
