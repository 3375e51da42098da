#include "pgn/compressed_source.h"

#include <algorithm>
#include <array>

namespace ombrin {

namespace {

constexpr std::array<Compression, 3> COMPRESSIONS = {{
    {"\x1f\x8b", ".gz", "zlib", makeGzipDecoder},
    {"\x28\xb5\x2f\xfd", ".zst", "zstd", makeZstdDecoder},
    {"BZh", ".bz2", "bzip2", makeBzip2Decoder},
}};

template <typename Holds>
const Compression* findCompression(Holds&& holds) {
  const auto* const found = std::ranges::find_if(COMPRESSIONS, holds);
  return found == COMPRESSIONS.end() ? nullptr : found;
}

}  // namespace

const Compression* compressionOf(std::string_view start) {
  return findCompression([start](const Compression& one) { return start.starts_with(one.mark); });
}

const Compression* compressionOfName(std::string_view name) {
  return findCompression([name](const Compression& one) { return name.ends_with(one.ending); });
}

std::size_t CompressedSource::read(std::span<char> room) {
  while (*problem_ == '\0') {
    const std::span<const char> in = file_->peek();
    if (in.empty() && !inPart_) return 0;
    const Decoder::Step step = decoder_->decode(in, room);
    file_->take(step.taken);
    inPart_ = step.state == Decoder::GOING_ON;
    if (step.state == Decoder::AT_END) decoder_->restart();
    if (step.state == Decoder::DAMAGED) problem_ = "the compressed file is damaged";
    if (step.made > 0) return step.made;
    if (in.empty() && inPart_) problem_ = "the compressed file ends too early";
  }
  return 0;
}

std::string CompressedSource::problem() const {
  const std::string below = file_->problem();
  return below.empty() ? problem_ : below;
}

}  // namespace ombrin
