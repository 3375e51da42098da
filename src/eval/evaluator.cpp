#include "eval/evaluator.h"

#include "eval/king_safety.h"
#include "eval/passed_pawns.h"
#include "eval/pawn_race.h"
#include "eval/pawn_structure.h"
#include "eval/piece_activity.h"
#include "eval/scale_factor.h"

namespace ombrin {

namespace {

constexpr int TEMPO = 6;

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
  const MaterialFacts& material = materialFacts();
  const int sum = computeTerms(material).sum();
  const int scale = scaleOf(material, sum);
  if (scale == DRAWN) return DRAW;
  cached = {board_.hash, scaledScore(board_, sum, scale)};
  return cached.score;
}

Score Evaluator::evaluateUncached() {
  const MaterialFacts& material = materialFacts();
  const int sum = computeTerms(material).sum();
  return scaledScore(board_, sum, scaleOf(material, sum));
}

EvaluationBreakdown Evaluator::breakdown() {
  const MaterialFacts& material = materialFacts();
  EvaluationBreakdown parts;
  parts.terms = computeTerms(material);
  for (const Color color : {WHITE, BLACK}) {
    PawnSideInfo info;
    parts.pawnStructure[color] = pawnStructure(board_, color, info);
    parts.passedPawns[color] = passedPawns(board_, *pawnEntry_, color);
  }
  parts.phase = material.phase;
  const int sum = parts.terms.sum();
  parts.scale = scaleOf(material, sum);
  parts.score = scaledScore(board_, sum, parts.scale);
  return parts;
}

int Evaluator::pawnScore() {
  return pawnScore(materialFacts().phase);
}

int Evaluator::pawnScore(int phase) {
  probePawnHash();
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

EvaluationTerms Evaluator::computeTerms(const MaterialFacts& material) {
  EvaluationTerms terms;
  terms.material = {100 * material.white.total(), 100 * material.black.total()};
  terms.imbalance = material.imbalance;
  terms.pawns = pawnScore(material.phase);  // and with it the entry that the terms below read
  const PawnEntry& pawns = *pawnEntry_;
  if (!material.isMiddlegame) terms.race = pawnevaluator(board_, pawns);
  const std::array<PieceActivity, 2> pieces = pieceActivity(board_, pawns, material.attackForce);
  terms.kingSafety = {kingSafety(board_, pawns, WHITE, pieces[BLACK]),
                      kingSafety(board_, pawns, BLACK, pieces[WHITE])};
  terms.activity = {pieces[WHITE].worth, pieces[BLACK].worth};
  return terms;
}

int Evaluator::scaleOf(const MaterialFacts& material, int sum) const {
  return material.isMiddlegame ? FULL_SCALE : scaleFactor(board_, *pawnEntry_, sum);
}

}  // namespace ombrin
