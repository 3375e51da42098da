#include "book/move_weights.h"

#include <algorithm>
#include <cmath>

namespace ombrin {

namespace {

double games(const BookEntry& move) {
  return static_cast<double>(move.games());
}

// Divides by the sum, unless that is 0 but for what rounding leaves.
void normalise(std::span<PickRecord> records, double PickRecord::*share) {
  constexpr double ROUNDING = 1e-9;
  double sum = 0;
  double size = 0;
  for (const PickRecord& record : records) {
    sum += record.*share;
    size += std::abs(record.*share);
  }
  if (std::abs(sum) <= ROUNDING * size) return;
  for (PickRecord& record : records) record.*share /= sum;
}

class MoveWeigher {
 public:
  MoveWeigher(std::span<const BookEntry> moves, std::span<PickRecord> records,
              const PlaySettings& settings, KnownOfMoves known)
      : moves_(moves), records_(records), settings_(settings), known_(known) {}

  void run(Color side) {
    rejectEach(side);
    rejectBesideBest();
    setShares();
    combine();
  }

 private:
  void rejectEach(Color side);
  void rejectBesideBest();
  void setShares();
  void combine();

  std::span<const BookEntry> moves_;
  std::span<PickRecord> records_;
  const PlaySettings& settings_;
  KnownOfMoves known_;
};

void MoveWeigher::rejectEach(Color side) {
  const double minScore = side == WHITE ? settings_.minscorew : settings_.minscoreb;
  for (std::size_t i = 0; i < moves_.size(); ++i) {
    PickRecord& record = records_[i];
    record.score = moves_[i].score();
    record.elo = moves_[i].elo();
    if (known_.elo && record.elo < settings_.minelo) record.rejected |= LOW_ELO;
    if (games(moves_[i]) < settings_.mingames) record.rejected |= TOO_FEW_GAMES;
    if (known_.score && record.score < minScore) record.rejected |= LOW_SCORE;
  }
}

void MoveWeigher::rejectBesideBest() {
  double mostGames = 0;
  double highestElo = 0;
  for (std::size_t i = 0; i < moves_.size(); ++i) {
    if (records_[i].rejected != 0) continue;
    mostGames = std::max(mostGames, games(moves_[i]));
    highestElo = std::max(highestElo, records_[i].elo);
  }
  const double fewestGames = std::trunc(mostGames * settings_.mingamepct);
  const double lowestElo = highestElo - settings_.maxelodelta;
  for (std::size_t i = 0; i < moves_.size(); ++i) {
    PickRecord& record = records_[i];
    if (games(moves_[i]) < fewestGames) record.rejected |= SMALL_GAME_SHARE;
    if (known_.elo && record.elo < lowestElo) record.rejected |= ELO_FAR_BELOW_BEST;
  }
}

void MoveWeigher::setShares() {
  double bestScore = 0;
  for (const PickRecord& record : records_) {
    if (record.rejected == 0) bestScore = std::max(bestScore, record.score);
  }
  for (std::size_t i = 0; i < moves_.size(); ++i) {
    PickRecord& record = records_[i];
    if (record.rejected != 0) continue;
    record.gameShare = games(moves_[i]);
    record.eloShare = known_.elo ? moves_[i].eloFactor : 0;
    const double behind = bestScore - record.score;
    // The best score has the full share even where no other is allowed any.
    if (!known_.score) continue;
    record.scoreShare = behind == 0 ? 1 : std::max(0.0, 1 - behind / settings_.maxscoredelta);
  }
  normalise(records_, &PickRecord::gameShare);
  normalise(records_, &PickRecord::eloShare);
  normalise(records_, &PickRecord::scoreShare);
  if (settings_.gameweight >= 0) return;
  // Prefer the rare moves; even the only one keeps a share.
  for (PickRecord& record : records_) {
    if (record.rejected == 0) record.gameShare = 1.00001 - record.gameShare;
  }
  normalise(records_, &PickRecord::gameShare);
}

void MoveWeigher::combine() {
  for (PickRecord& record : records_) {
    if (record.rejected != 0) continue;
    record.combined = settings_.gameweight * record.gameShare +
                      settings_.scoreweight * record.scoreShare +
                      (known_.elo ? settings_.eloweight * record.eloShare : 0);
  }
  // When negative weights prevail, so is their sum, and it turns them round.
  normalise(records_, &PickRecord::combined);
  for (PickRecord& record : records_) record.combined = std::max(0.0, record.combined);
  normalise(records_, &PickRecord::combined);

  const double largest = std::ranges::max(records_, {}, &PickRecord::combined).combined;
  for (PickRecord& record : records_) {
    record.weight = record.combined < largest * settings_.minweight ? 0 : record.combined;
  }
  normalise(records_, &PickRecord::weight);
  // Without this, the first of nothing but rejected moves would count as the best.
  if (std::ranges::all_of(records_, [](const PickRecord& r) { return r.rejected != 0; })) return;
  for (PickRecord& record : records_) record.probability = record.weight * settings_.random;
  PickRecord& best = *std::ranges::max_element(records_, {}, &PickRecord::weight);
  best.probability = 1 - (1 - best.weight) * settings_.random;
}

}  // namespace

void weighMoves(std::span<const BookEntry> moves, std::span<PickRecord> records, Color side,
                const PlaySettings& settings, KnownOfMoves known) {
  MoveWeigher(moves, records, settings, known).run(side);
}

}  // namespace ombrin
