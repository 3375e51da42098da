#include "eval/evaluation_breakdown.h"

#include "eval/scale_factor.h"
#include "util/print.h"

namespace ombrin {

namespace {

void printRow(std::FILE* stream, const char* name, int white, int black) {
  print(stream, "%-18s %7i %7i %7i\n", name, white, black, white - black);
}
void printRow(std::FILE* stream, const char* name, const std::array<int, 2>& term) {
  printRow(stream, name, term[WHITE], term[BLACK]);
}
void printTotal(std::FILE* stream, const char* name, int value) {
  print(stream, "%-18s %23i\n", name, value);
}

}  // namespace

void printBreakdown(const EvaluationBreakdown& breakdown, std::FILE* stream) {
  const EvaluationTerms& terms = breakdown.terms;
  const PhaseScore& white = breakdown.pawnStructure[WHITE];
  const PhaseScore& black = breakdown.pawnStructure[BLACK];
  print(stream, "%-18s %7s %7s %7s\n", "centipawns", "White", "Black", "total");
  printRow(stream, "material", terms.material);
  printTotal(stream, "imbalance", terms.imbalance);
  printTotal(stream, "pawns", terms.pawns);
  printRow(stream, "  middlegame", white.middlegame(), black.middlegame());
  printRow(stream, "  endgame", white.endgame(), black.endgame());
  printRow(stream, "  passed pawns", breakdown.passedPawns);
  printTotal(stream, "  phase (of 64)", breakdown.phase);
  printTotal(stream, "pawn race", terms.race);
  printRow(stream, "king safety", terms.kingSafety);
  printRow(stream, "piece activity", terms.activity);
  printTotal(stream, "sum", terms.sum());
  if (breakdown.scale == DRAWN) {
    print(stream, "%-18s %23s\n", "scale", "draw");
  } else {
    printTotal(stream, "scale (of 1024)", breakdown.scale);
  }
  printTotal(stream, "for side to move", breakdown.score.value());
}

}  // namespace ombrin
