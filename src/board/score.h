#pragma once

#include <compare>
#include <cstdint>

namespace ombrin {

// A score in centipawns from the side to move's point of view. A mate in n plies from the root is
// 30000 - n and being mated n - 30000; anything beyond ±29000 is a mate score, anything beyond
// ±3000 a position known to be won or lost (mates and bitbase results).
class Score {
 public:
  constexpr Score() = default;     // a draw
  constexpr Score(int centipawns)  // NOLINT(google-explicit-constructor): numbers are scores
      : value_(centipawns) {}

  constexpr int value() const { return value_; }
  constexpr bool isMate() const { return value_ > 29000 || value_ < -29000; }

  // How a score found `ply` plies from the root is kept for a node: won and lost scores count their
  // distance from the node instead of from the root.
  constexpr Score relativeToNode(int ply) const {
    return value_ > 3000 ? value_ + ply : value_ < -3000 ? value_ - ply : value_;
  }
  // The inverse.
  constexpr Score relativeToRoot(int ply) const {
    return value_ > 3000 ? value_ - ply : value_ < -3000 ? value_ + ply : value_;
  }

  friend constexpr auto operator<=>(Score, Score) = default;
  constexpr Score operator-() const { return -value_; }
  friend constexpr Score operator+(Score a, Score b) { return a.value_ + b.value_; }
  friend constexpr Score operator-(Score a, Score b) { return a.value_ - b.value_; }

 private:
  std::int32_t value_ = 0;
};

inline constexpr Score DRAW = 0;
inline constexpr Score MATE = 30000;  // bounds the root window; its negative is "no score yet"

constexpr Score matedIn(int ply) {
  return ply - 30000;
}

}  // namespace ombrin
