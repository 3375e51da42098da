#include "pgn/decoder.h"

#ifdef OMBRIN_HAS_ZSTD

#include <zstd.h>

namespace ombrin {

namespace {

class ZstdDecoder : public Decoder {
 public:
  ZstdDecoder() {
    // Whatever the file was made with, its memory is the price of reading it.
    constexpr int LARGEST_WINDOW = 30;
    if (stream_) ZSTD_DCtx_setParameter(stream_.get(), ZSTD_d_windowLogMax, LARGEST_WINDOW);
  }

  Step decode(std::span<const char> in, std::span<char> out) override {
    if (stream_ == nullptr) return {0, 0, DAMAGED};
    ZSTD_inBuffer from{in.data(), in.size(), 0};
    ZSTD_outBuffer to{out.data(), out.size(), 0};
    const std::size_t left = ZSTD_decompressStream(stream_.get(), &to, &from);
    return {from.pos, to.pos, ZSTD_isError(left) != 0 ? DAMAGED : left == 0 ? AT_END : GOING_ON};
  }
  // The library goes on to the next part by itself.
  void restart() override {}

 private:
  struct Free {
    void operator()(ZSTD_DStream* stream) const { ZSTD_freeDStream(stream); }
  };

  std::unique_ptr<ZSTD_DStream, Free> stream_{ZSTD_createDStream()};
};

}  // namespace

std::unique_ptr<Decoder> makeZstdDecoder() {
  return std::make_unique<ZstdDecoder>();
}

}  // namespace ombrin

#else

namespace ombrin {

std::unique_ptr<Decoder> makeZstdDecoder() {
  return nullptr;
}

}  // namespace ombrin

#endif
