#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

namespace bitbases {

// Calls work(begin, end) for consecutive ranges that cover [0, size), on `threads` threads at once,
// and returns when all is done. Ranges begin at multiples of `grain`.
template <typename Work>
void forRanges(std::uint64_t size, std::uint64_t grain, int threads, const Work& work) {
  std::atomic<std::uint64_t> next = 0;
  const auto run = [&] {
    for (;;) {
      // Only the number must be unique; the data is published by the threads' end.
      const std::uint64_t begin = next.fetch_add(grain, std::memory_order_relaxed);
      if (begin >= size) return;
      work(begin, std::min(begin + grain, size));
    }
  };
  std::vector<std::jthread> others;
  for (int i = 1; i < threads; ++i) others.emplace_back(run);
  run();
}

}  // namespace bitbases
