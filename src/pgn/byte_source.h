#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace ombrin {

// Bytes from somewhere, one after the other. One thread at a time.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  // Fills the front of `room`, which is not empty, and returns how much; 0 at the end, and when
  // reading fails. Blocks for as long as what is behind it does.
  virtual std::size_t read(std::span<char> room) = 0;

  // Bytes taken from the file so far: of a compressed one, compressed bytes.
  virtual std::uint64_t consumed() const = 0;

  // Why reading ended before the end; empty when it did not.
  virtual std::string problem() const { return {}; }
};

// What a C stream gives, which is its opener's to close.
class StreamSource : public ByteSource {
 public:
  explicit StreamSource(std::FILE* stream) : stream_(stream) {}

  std::size_t read(std::span<char> room) override {
    const std::size_t count = std::fread(room.data(), 1, room.size(), stream_);
    consumed_ += count;
    return count;
  }
  std::uint64_t consumed() const override { return consumed_; }
  std::string problem() const override {
    return std::ferror(stream_) != 0 ? "the file cannot be read" : "";
  }

 private:
  std::FILE* stream_;
  std::uint64_t consumed_ = 0;
};

}  // namespace ombrin
