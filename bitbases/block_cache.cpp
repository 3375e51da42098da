#include "block_cache.h"

#include <algorithm>
#include <span>

namespace bitbases {

BlockCache::BlockCache(std::size_t bytes)
    : setCount_(std::max<std::size_t>(1, bytes / (sizeof(Set) + WAYS * sizeof(Block)))),
      sets_(std::make_unique<Set[]>(setCount_)),
      words_(std::make_unique_for_overwrite<Squares[]>(setCount_ * WAYS * 2 * Block::WORDS)) {
  for (Set& set : std::span(sets_.get(), setCount_)) {
    for (auto& key : set.keys) key.store(EMPTY, std::memory_order_relaxed);
  }
}

std::size_t BlockCache::setOf(std::uint64_t key) const {
  const std::uint64_t spread = key * 0x9e3779b97f4a7c15;
  return static_cast<std::size_t>((spread >> 32) * setCount_ >> 32);
}

std::optional<BlockCache::Words> BlockCache::find(std::uint64_t key, std::uint32_t word) const {
  const std::size_t number = setOf(key);
  Set& set = sets_[number];
  const std::uint32_t version = set.version.load(std::memory_order_acquire);
  if (version % 2 != 0) return std::nullopt;
  for (std::size_t way = 0; way < WAYS; ++way) {
    if (set.keys[way].load(std::memory_order_acquire) != key) continue;
    Squares* const kept = wordsOf(number, way);
    const Words words = {
        std::atomic_ref(kept[word]).load(std::memory_order_acquire),
        std::atomic_ref(kept[Block::WORDS + word]).load(std::memory_order_acquire)};
    if (set.version.load(std::memory_order_relaxed) != version) return std::nullopt;
    // Threads that look into the same block do not take its line from each other.
    if (!set.used[way].load(std::memory_order_relaxed)) {
      set.used[way].store(true, std::memory_order_relaxed);
    }
    return words;
  }
  return std::nullopt;
}

void BlockCache::insert(std::uint64_t key, const Block& block) {
  const std::size_t number = setOf(key);
  Set& set = sets_[number];
  const std::scoped_lock lock(set.writing);
  const bool isThere = std::ranges::any_of(
      set.keys, [key](const auto& one) { return one.load(std::memory_order_relaxed) == key; });
  if (isThere) return;
  // The first that has not been used since the last round.
  while (set.used[set.hand].exchange(false, std::memory_order_relaxed)) {
    set.hand = (set.hand + 1) % WAYS;
  }
  const std::size_t way = set.hand;
  set.hand = (set.hand + 1) % WAYS;
  const std::uint32_t version = set.version.load(std::memory_order_relaxed);
  set.version.store(version + 1, std::memory_order_relaxed);
  set.keys[way].store(key, std::memory_order_release);
  Squares* const kept = wordsOf(number, way);
  for (std::size_t word = 0; word < Block::WORDS; ++word) {
    std::atomic_ref(kept[word]).store(block.won[word], std::memory_order_release);
    std::atomic_ref(kept[Block::WORDS + word]).store(block.lost[word], std::memory_order_release);
  }
  set.used[way].store(true, std::memory_order_relaxed);
  set.version.store(version + 2, std::memory_order_release);
}

}  // namespace bitbases
