// Tables are kept in blocks, each compressed by itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "symmetry.h"

namespace bitbases {

// So many words of one table and one side to move, or fewer at the end: first which of their
// positions are won, then which are lost.
struct Block {
  static constexpr std::uint32_t WORDS = 1024;

  std::array<Squares, WORDS> won{};
  std::array<Squares, WORDS> lost{};
};

// No block gets larger, and none of zeros has any bytes.
std::size_t largestPacked();
std::vector<std::byte> packed(const Block& block);
// False when the bytes are no block.
bool unpack(std::span<const std::byte> bytes, Block& block);

// Of the bytes of a block, and where it is.
std::uint32_t checksum(std::span<const std::byte> bytes, std::uint64_t place);

}  // namespace bitbases
