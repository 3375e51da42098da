#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace ombrin {

// Turns compressed bytes into plain ones. A file may consist of several parts, each of which is
// compressed for itself. One thread at a time.
class Decoder {
 public:
  enum State {
    GOING_ON,
    AT_END,   // of a part; restart() comes next
    DAMAGED,  // the bytes are none that the library made
  };
  struct Step {
    std::size_t taken = 0;
    std::size_t made = 0;
    State state = GOING_ON;
  };

  Decoder() = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  virtual ~Decoder() = default;

  // Takes from the front of `in`, which is empty at the end of the file, and fills the front of
  // `out`, which is not empty.
  virtual Step decode(std::span<const char> in, std::span<char> out) = 0;
  virtual void restart() = 0;
};

// Null when the program was built without the library, or when there is no memory.
std::unique_ptr<Decoder> makeGzipDecoder();
std::unique_ptr<Decoder> makeZstdDecoder();
std::unique_ptr<Decoder> makeBzip2Decoder();

}  // namespace ombrin
