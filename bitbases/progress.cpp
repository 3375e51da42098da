#include "progress.h"

#include <algorithm>
#include <array>

namespace bitbases {

namespace {

constexpr std::array<int, TYPES> UNITS = {10, 5, 3, 3, 1};
constexpr int EVEN = 5000;
constexpr int PAWN_STEP = 30;

// The pawn nearest to its promotion, the winner's if it has any; null without pawns.
const Man* leadingPawn(const Position& position, Color winner) {
  const Man* leader = nullptr;
  for (const Man& man : position.men()) {
    if (man.type != PAWN) continue;
    const bool isFirst = leader == nullptr || (leader->color != winner && man.color == winner);
    const bool isAhead =
        leader != nullptr && leader->color == man.color &&
        relativeRank(man.color, man.square) > relativeRank(man.color, leader->square);
    if (isFirst || isAhead) leader = &man;
  }
  return leader;
}

}  // namespace

int progress(const Position& position, Color winner) {
  int score = EVEN;
  for (const Man& man : position.men()) {
    const int sign = man.color == winner ? 1 : -1;
    score += sign * 100 * UNITS[man.type];
    if (man.type == PAWN) score += sign * PAWN_STEP * (relativeRank(man.color, man.square) - 1);
    // Fewer men of the loser make the win simpler.
    if (man.type != PAWN && man.color != winner) score -= 100;
  }
  // Small enough that no king's step outweighs a pawn's.
  if (const Man* pawn = leadingPawn(position, winner); pawn != nullptr) {
    score -= 4 * distance(position.king[winner], pawn->square);
    if (pawn->color == winner) score += 2 * distance(position.king[1 - winner], pawn->square);
  }
  return std::clamp(score, 3500, 8000);
}

}  // namespace bitbases
