#pragma once

#include <cstdint>

namespace ombrin {

// A term that weighs differently while pieces abound and when few are left, in centipawns. Both
// values share a word, so that adding is one instruction; each must stay within 16 bits.
class PhaseScore {
 public:
  constexpr PhaseScore() = default;
  constexpr PhaseScore(int middlegame, int endgame)
      : word_(static_cast<std::uint32_t>(middlegame) +
              (static_cast<std::uint32_t>(endgame) << 16)) {}

  constexpr int middlegame() const { return static_cast<std::int16_t>(word_); }
  // A negative middlegame value has borrowed from this half.
  constexpr int endgame() const { return static_cast<std::int16_t>((word_ + 0x8000) >> 16); }

  constexpr PhaseScore& operator+=(PhaseScore other) {
    word_ += other.word_;
    return *this;
  }
  friend constexpr PhaseScore operator+(PhaseScore a, PhaseScore b) { return a += b; }
  friend constexpr PhaseScore operator*(PhaseScore score, int times) {
    score.word_ *= static_cast<std::uint32_t>(times);
    return score;
  }
  friend constexpr bool operator==(PhaseScore, PhaseScore) = default;

 private:
  std::uint32_t word_ = 0;
};

static_assert((PhaseScore(-3, 5) + PhaseScore(-4, -9)).middlegame() == -7 &&
              (PhaseScore(-3, 5) + PhaseScore(-4, -9)).endgame() == -4);

}  // namespace ombrin
