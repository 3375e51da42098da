#pragma once

#include <cstddef>
#include <cstdint>
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

}  // namespace ombrin
