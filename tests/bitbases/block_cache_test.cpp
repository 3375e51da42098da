// Blocks that replace each other all the time, and readers that must never see a mixture.
#include "../bitbases/block_cache.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <thread>

namespace bitbase_test {
namespace {

using bitbases::Block;
using bitbases::BlockCache;

bitbases::Squares pattern(std::uint64_t key, std::uint32_t word) {
  return (key * Block::WORDS + word) * 0x9e3779b97f4a7c15;
}

TEST(BlockCache, FindsWhatWasPutInOrNothing) {
  BlockCache cache(40 * sizeof(Block));  // forty blocks for sixty keys
  EXPECT_LE(cache.bytes(), 40 * sizeof(Block));
  std::array<int, 4> found{};
  std::array<int, 4> wrong{};
  {
    std::array<std::jthread, 4> threads;
    for (unsigned i = 0; i < threads.size(); ++i) {
      threads[i] = std::jthread([&, i] {
        std::mt19937 random(i);
        Block block;
        for (int n = 0; n < 4000; ++n) {
          const std::uint64_t key = random() % 60;
          const auto word = static_cast<std::uint32_t>(random() % Block::WORDS);
          if (const auto words = cache.find(key, word)) {
            ++found[i];
            if (words->won != pattern(key, word) || words->lost != ~words->won) ++wrong[i];
            continue;
          }
          for (std::uint32_t k = 0; k < Block::WORDS; ++k) {
            block.won[k] = pattern(key, k);
            block.lost[k] = ~block.won[k];
          }
          cache.insert(key, block);
        }
      });
    }
  }
  for (unsigned i = 0; i < found.size(); ++i) {
    EXPECT_EQ(wrong[i], 0);
    EXPECT_GT(found[i], 1000) << "of 4000, with room for more than half";
  }
}

}  // namespace
}  // namespace bitbase_test
