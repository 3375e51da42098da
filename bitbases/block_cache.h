#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "block.h"

namespace bitbases {

// Keeps the blocks that were looked into last, as many as a number of bytes holds.
//
// Any number of threads may look things up, and put blocks in, at any time. Looking up takes no
// lock; a reader that meets a writer in the same one of the many small parts of the cache finds
// nothing (Boehm, "Can Seqlocks Get Along with Programming Language Memory Models?", 2012).
class BlockCache {
 public:
  struct Words {
    Squares won;
    Squares lost;
  };

  // The bytes are all that it ever takes; there is room for one part at least.
  explicit BlockCache(std::size_t bytes);

  // A word of the block with that key; nothing when the block is not there.
  std::optional<Words> find(std::uint64_t key, std::uint32_t word) const;
  void insert(std::uint64_t key, const Block& block);
  std::size_t bytes() const { return setCount_ * (sizeof(Set) + WAYS * sizeof(Block)); }

 private:
  static constexpr std::size_t WAYS = 8;
  static constexpr std::uint64_t EMPTY = ~std::uint64_t{0};

  struct Set {
    std::atomic<std::uint32_t> version = 0;  // odd while a block is being replaced
    std::uint32_t hand = 0;
    std::mutex writing;
    std::array<std::atomic<std::uint64_t>, WAYS> keys;
    // Looked into since the hand last came by?
    std::array<std::atomic<bool>, WAYS> used;
  };

  std::size_t setOf(std::uint64_t key) const;
  // The words of a block, first those of the won positions.
  Squares* wordsOf(std::size_t set, std::size_t way) const {
    return &words_[(set * WAYS + way) * 2 * Block::WORDS];
  }

  std::size_t setCount_;
  std::unique_ptr<Set[]> sets_;
  std::unique_ptr<Squares[]> words_;  // not touched before they are needed
};

}  // namespace bitbases
