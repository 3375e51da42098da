// The evaluation in its parts, for people and tests.
#pragma once

#include <array>
#include <cstdio>

#include "board/color.h"
#include "board/score.h"
#include "eval/phase_score.h"

namespace ombrin {

// The terms whose sum is the evaluation, in centipawns. Those by colour are positive when good for
// that colour, the others are White minus Black.
struct EvaluationTerms {
  std::array<int, 2> material{};
  int imbalance = 0;
  int pawns = 0;
  int race = 0;
  std::array<int, 2> kingSafety{};
  std::array<int, 2> activity{};

  // White minus Black.
  int sum() const {
    const auto difference = [](const std::array<int, 2>& term) {
      return term[WHITE] - term[BLACK];
    };
    return difference(material) + imbalance + pawns + race + difference(kingSafety) +
           difference(activity);
  }
};

struct EvaluationBreakdown {
  EvaluationTerms terms;
  // What terms.pawns is made of, by colour: the structure, and the passed pawns by the pieces
  // around them (of which half counts in the middlegame); phase is 64 in the middlegame and 0
  // without pieces.
  std::array<PhaseScore, 2> pawnStructure{};
  std::array<int, 2> passedPawns{};
  int phase = 0;
  // What terms.sum() and the tempo are multiplied with, in 1/1024; DRAWN (scale_factor.h) for a
  // draw by material.
  int scale = 0;
  Score score;  // for the side to move: what Evaluator::evaluate returns
};

// Writes the breakdown as a table. Nothing happens when the stream is null.
void printBreakdown(const EvaluationBreakdown& breakdown, std::FILE* stream);

}  // namespace ombrin
