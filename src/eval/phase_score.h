#pragma once

namespace ombrin {

// A term that weighs differently while pieces abound and when few are left, in centipawns.
struct PhaseScore {
  int middlegame = 0;
  int endgame = 0;

  constexpr PhaseScore& operator+=(PhaseScore other) {
    middlegame += other.middlegame;
    endgame += other.endgame;
    return *this;
  }
  friend constexpr bool operator==(PhaseScore, PhaseScore) = default;
};

}  // namespace ombrin
