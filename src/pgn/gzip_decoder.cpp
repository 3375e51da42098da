#include "pgn/decoder.h"

#ifdef OMBRIN_HAS_ZLIB

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace ombrin {

namespace {

constexpr int GZIP_WINDOW = 15 + 16;

class GzipDecoder : public Decoder {
 public:
  GzipDecoder() : ready_(inflateInit2(&stream_, GZIP_WINDOW) == Z_OK) {}
  ~GzipDecoder() override {
    if (ready_) inflateEnd(&stream_);
  }

  Step decode(std::span<const char> in, std::span<char> out) override {
    if (!ready_) return {0, 0, DAMAGED};
    const uInt inSize = sizeOf(in.size());
    const uInt outSize = sizeOf(out.size());
    // The library does not change what it reads, but does not say so.
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.data()));
    stream_.avail_in = inSize;
    stream_.next_out = reinterpret_cast<Bytef*>(out.data());
    stream_.avail_out = outSize;
    const int result = inflate(&stream_, Z_NO_FLUSH);
    const bool sound = result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
    return {inSize - stream_.avail_in, outSize - stream_.avail_out,
            result == Z_STREAM_END ? AT_END
            : sound                ? GOING_ON
                                   : DAMAGED};
  }
  void restart() override { inflateReset(&stream_); }

 private:
  static uInt sizeOf(std::size_t size) {
    return static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
  }

  z_stream stream_{};
  bool ready_;
};

}  // namespace

std::unique_ptr<Decoder> makeGzipDecoder() {
  return std::make_unique<GzipDecoder>();
}

}  // namespace ombrin

#else

namespace ombrin {

std::unique_ptr<Decoder> makeGzipDecoder() {
  return nullptr;
}

}  // namespace ombrin

#endif
