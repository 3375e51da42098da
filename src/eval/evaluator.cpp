#include "eval/evaluator.h"

#include <algorithm>

#include "eval/king_safety.h"
#include "eval/passed_pawns.h"
#include "eval/pawn_race.h"
#include "eval/pawn_structure.h"
#include "eval/piece_activity.h"
#include "eval/scale_factor.h"

namespace ombrin {

namespace {

constexpr int TEMPO = 6;
constexpr int FULL_PHASE = 64;  // units of pieces of both sides that make a middlegame

int phaseOf(const Board& board) {
  return std::min(board.WhiteMaterial.units() + board.BlackMaterial.units(), FULL_PHASE);
}

// The sum, White minus Black, scaled and seen by the side to move.
int scaledScore(const Board& board, int sum, int scale) {
  return ((board.side == WHITE ? sum : -sum) + TEMPO) * scale / FULL_SCALE;
}

}  // namespace

Score Evaluator::evaluate() {
  ++evaluations;
  CacheEntry& cached = cacheEntry();
  if (cached.key == board_.hash) {
    probePawnHash();
    return cached.score;
  }
  const int sum = computeTerms().sum();
  const int scale = scaleFactor(board_, *pawnEntry_, sum);
  if (scale == DRAWN) return DRAW;
  cached = {board_.hash, scaledScore(board_, sum, scale)};
  return cached.score;
}

Score Evaluator::evaluateUncached() {
  const int sum = computeTerms().sum();
  return scaledScore(board_, sum, scaleFactor(board_, *pawnEntry_, sum));
}

EvaluationBreakdown Evaluator::breakdown() {
  EvaluationBreakdown parts;
  parts.terms = computeTerms();
  for (const Color color : {WHITE, BLACK}) {
    PawnSideInfo info;
    parts.pawnStructure[color] = pawnStructure(board_, color, info);
    parts.passedPawns[color] = passedPawns(board_, *pawnEntry_, color);
  }
  parts.phase = phaseOf(board_);
  const int sum = parts.terms.sum();
  parts.scale = scaleFactor(board_, *pawnEntry_, sum);
  parts.score = scaledScore(board_, sum, parts.scale);
  return parts;
}

int Evaluator::pawnScore() {
  probePawnHash();
  const int phase = phaseOf(board_);
  const int white = passedPawns(board_, *pawnEntry_, WHITE);
  const int black = passedPawns(board_, *pawnEntry_, BLACK);
  const int middlegame = white / 2 + pawnEntry_->middlegame - black / 2;
  const int endgame = white + pawnEntry_->endgame - black;
  return (middlegame * phase + endgame * (FULL_PHASE - phase)) / FULL_PHASE;
}

void Evaluator::probePawnHash() {
  pawnEntry_ = &pawnHash_.slot(board_.phash);
  const auto key = static_cast<std::uint32_t>(board_.phash >> 32);
  if (pawnEntry_->key == key) {
    ++pawnHash_.hits;
    return;
  }
  ++pawnHash_.misses;
  pawnEntry_->key = key;
  evaluatePawns(board_, *pawnEntry_);
}

EvaluationTerms Evaluator::computeTerms() {
  const Material white = board_.WhiteMaterial;
  const Material black = board_.BlackMaterial;
  EvaluationTerms terms;
  terms.material = {100 * white.total(), 100 * black.total()};
  terms.imbalance = imbalances_.of(white, black);
  terms.pawns = pawnScore();  // and with it the entry that the terms below read
  terms.race = pawnevaluator(board_, *pawnEntry_);
  const PawnEntry& pawns = *pawnEntry_;
  const std::array<PieceActivity, 2> pieces = pieceActivity(board_, pawns);
  terms.kingSafety = {kingSafety(board_, pawns, WHITE, pieces[BLACK]),
                      kingSafety(board_, pawns, BLACK, pieces[WHITE])};
  terms.activity = {pieces[WHITE].worth, pieces[BLACK].worth};
  return terms;
}

}  // namespace ombrin
