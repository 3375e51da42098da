#pragma once

#include <compare>
#include <cstdint>

namespace ombrin {

// A score in centipawns from the side to move's point of view. Beyond WIN_BOUND, either way, the
// position is known to be won or lost (mates and bitbase results), beyond MATE_BOUND by a mate
// whose distance from the root the score tells.
class Score {
 public:
  constexpr Score() = default;     // a draw
  constexpr Score(int centipawns)  // NOLINT(google-explicit-constructor): numbers are scores
      : value_(centipawns) {}
  // The side to move gives mate with the n-th move from the root, both sides' moves counted; or
  // gets mated with it. matedIn(0) is a mate on the board.
  static constexpr Score mateIn(int plies) { return IMMEDIATE_MATE - plies; }
  static constexpr Score matedIn(int plies) { return plies - IMMEDIATE_MATE; }

  constexpr int value() const { return value_; }

  // Plies from the root to the mate; of any other score, more than any mate takes.
  constexpr int pliesToMate() const { return IMMEDIATE_MATE - (value_ < 0 ? -value_ : value_); }
  // Of a mate score, the number of own moves to the mate that is given, or minus the number of own
  // moves to the one that is suffered.
  constexpr int movesToMate() const {
    return value_ > 0 ? (pliesToMate() + 1) / 2 : -(pliesToMate() / 2);
  }

  // How a score found `ply` plies from the root is kept for a node: won and lost scores count their
  // distance from the node instead of from the root.
  constexpr Score relativeToNode(int ply) const;
  // The inverse.
  constexpr Score relativeToRoot(int ply) const { return relativeToNode(-ply); }

  friend constexpr auto operator<=>(Score, Score) = default;
  constexpr Score operator-() const { return -value_; }
  friend constexpr Score operator+(Score a, Score b) { return a.value_ + b.value_; }
  friend constexpr Score operator-(Score a, Score b) { return a.value_ - b.value_; }

 private:
  static constexpr int IMMEDIATE_MATE = 30000;

  std::int32_t value_ = 0;
};

inline constexpr Score DRAW = 0;
inline constexpr Score MATE = Score::mateIn(0);  // bounds the root window; -MATE is "no score yet"
// Scores beyond it are mates. The bound itself is what quiescence says that looks no further.
inline constexpr Score MATE_BOUND = 29000;
// Scores from here on are known wins; null moves, futility and bitbase draws stay below.
inline constexpr Score WIN_BOUND = 3000;

constexpr Score Score::relativeToNode(int ply) const {
  return *this > WIN_BOUND ? value_ + ply : *this < -WIN_BOUND ? value_ - ply : value_;
}

}  // namespace ombrin
