#include "pgn/file_source.h"

#include <algorithm>

#include "pgn/compressed_source.h"

namespace ombrin {

namespace {

constexpr std::size_t BLOCK_BYTES = std::size_t{1} << 17;

}  // namespace

FileSource::FileSource(std::FILE* stream) : stream_(stream), buffer_(BLOCK_BYTES) {}

std::span<const char> FileSource::peek() {
  if (begin_ == end_) {
    begin_ = 0;
    end_ = std::fread(buffer_.data(), 1, buffer_.size(), stream_.get());
    fetched_ += end_;
  }
  return std::span(buffer_).subspan(begin_, end_ - begin_);
}

std::size_t FileSource::read(std::span<char> room) {
  const std::span<const char> there = peek();
  const std::size_t count = std::min(there.size(), room.size());
  std::copy_n(there.begin(), count, room.begin());
  take(count);
  return count;
}

std::string FileSource::problem() const {
  return std::ferror(stream_.get()) != 0 ? "the file cannot be read to its end" : "";
}

std::unique_ptr<ByteSource> openSource(const std::string& name, std::string& problem) {
  problem.clear();
  std::FILE* const stream = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
  if (stream == nullptr) return nullptr;
  auto file = std::make_unique<FileSource>(stream);
  const std::span<const char> start = file->peek();
  const Compression* const compression = compressionOf({start.data(), start.size()});
  if (compression == nullptr) return file;
  std::unique_ptr<Decoder> decoder = compression->makeDecoder();
  if (decoder == nullptr) {
    problem = std::string("this program was built without ") + compression->library;
    return nullptr;
  }
  return std::make_unique<CompressedSource>(std::move(file), std::move(decoder));
}

}  // namespace ombrin
