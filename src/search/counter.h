#pragma once

#include <atomic>
#include <cstdint>

namespace ombrin {

// A count that one thread advances and any thread may read: the writer's load and store need not be
// one operation, so advancing costs what it costs on a plain number.
class Counter {
 public:
  Counter() = default;
  Counter(const Counter& other) : value_(other.value()) {}
  Counter& operator=(const Counter& other) {
    value_.store(other.value(), std::memory_order_relaxed);
    return *this;
  }

  std::uint64_t value() const { return value_.load(std::memory_order_relaxed); }
  Counter& operator++() { return *this += 1; }
  Counter& operator+=(std::uint64_t amount) {
    // Relaxed: a reader wants a recent value and concludes nothing from it about other memory.
    value_.store(value() + amount, std::memory_order_relaxed);
    return *this;
  }

 private:
  std::atomic<std::uint64_t> value_{0};
};

}  // namespace ombrin
