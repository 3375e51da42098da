#include "block.h"

#include <zstd.h>

#include <bit>
#include <cstring>
#include <memory>

namespace bitbases {

static_assert(std::endian::native == std::endian::little);
static_assert(sizeof(Block) == 2 * sizeof(Squares) * Block::WORDS);

namespace {

// Higher ones gain a hundredth and take twice as long.
constexpr int LEVEL = 15;

// What every thread keeps, because it takes longer to make than to use.
ZSTD_DCtx* unpacker() {
  struct Free {
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
  };
  thread_local const std::unique_ptr<ZSTD_DCtx, Free> CONTEXT(ZSTD_createDCtx());
  return CONTEXT.get();
}

ZSTD_CCtx* packer() {
  struct Free {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
  };
  thread_local const std::unique_ptr<ZSTD_CCtx, Free> CONTEXT(ZSTD_createCCtx());
  return CONTEXT.get();
}

constexpr std::uint64_t mixed(std::uint64_t sum, std::uint64_t word) {
  sum = (sum ^ word) * 0x9e3779b97f4a7c15;
  return sum ^ (sum >> 29);
}

}  // namespace

std::size_t largestPacked() {
  return ZSTD_compressBound(sizeof(Block));
}

std::vector<std::byte> packed(const Block& block) {
  const auto isZero = [](const auto& words) {
    return words == std::array<Squares, Block::WORDS>{};
  };
  if (isZero(block.won) && isZero(block.lost)) return {};
  std::vector<std::byte> bytes(largestPacked());
  const std::size_t size =
      ZSTD_compressCCtx(packer(), bytes.data(), bytes.size(), &block, sizeof block, LEVEL);
  bytes.resize(size);
  return bytes;
}

bool unpack(std::span<const std::byte> bytes, Block& block) {
  if (bytes.empty()) {
    block = {};
    return true;
  }
  ZSTD_DCtx* const context = unpacker();
  return context != nullptr && ZSTD_decompressDCtx(context, &block, sizeof block, bytes.data(),
                                                   bytes.size()) == sizeof block;
}

std::uint32_t checksum(std::span<const std::byte> bytes, std::uint64_t place) {
  std::uint64_t sum = mixed(bytes.size(), place);
  for (; bytes.size() >= sizeof(std::uint64_t); bytes = bytes.subspan(sizeof(std::uint64_t))) {
    std::uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    sum = mixed(sum, word);
  }
  for (const std::byte byte : bytes) sum = mixed(sum, static_cast<std::uint64_t>(byte));
  return static_cast<std::uint32_t>(sum >> 32);
}

}  // namespace bitbases
