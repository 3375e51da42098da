#include "pgn/decoder.h"

#ifdef OMBRIN_HAS_BZIP2

#include <bzlib.h>

#include <algorithm>
#include <limits>

namespace ombrin {

namespace {

class Bzip2Decoder : public Decoder {
 public:
  Bzip2Decoder() { begin(); }
  ~Bzip2Decoder() override { end(); }

  Step decode(std::span<const char> in, std::span<char> out) override {
    if (!ready_) return {0, 0, DAMAGED};
    const unsigned inSize = sizeOf(in.size());
    const unsigned outSize = sizeOf(out.size());
    // The library does not change what it reads, but does not say so.
    stream_.next_in = const_cast<char*>(in.data());
    stream_.avail_in = inSize;
    stream_.next_out = out.data();
    stream_.avail_out = outSize;
    const int result = BZ2_bzDecompress(&stream_);
    return {inSize - stream_.avail_in, outSize - stream_.avail_out,
            result == BZ_STREAM_END ? AT_END
            : result == BZ_OK       ? GOING_ON
                                    : DAMAGED};
  }
  void restart() override {
    end();
    begin();
  }

 private:
  void begin() {
    stream_ = {};
    ready_ = BZ2_bzDecompressInit(&stream_, 0, 0) == BZ_OK;
  }
  void end() {
    if (ready_) BZ2_bzDecompressEnd(&stream_);
  }
  static unsigned sizeOf(std::size_t size) {
    return static_cast<unsigned>(std::min<std::size_t>(size, std::numeric_limits<unsigned>::max()));
  }

  bz_stream stream_{};
  bool ready_ = false;
};

}  // namespace

std::unique_ptr<Decoder> makeBzip2Decoder() {
  return std::make_unique<Bzip2Decoder>();
}

}  // namespace ombrin

#else

namespace ombrin {

std::unique_ptr<Decoder> makeBzip2Decoder() {
  return nullptr;
}

}  // namespace ombrin

#endif
