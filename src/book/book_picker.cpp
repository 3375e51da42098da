#include "book/book_picker.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "board/notation.h"

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

}  // namespace

Move BookPicker::pick() {
  return pick(std::rand() / (RAND_MAX + 1.0));
}

Move BookPicker::pick(double drawn) {
  const Board& board = book_.board();
  if (settings_.maxply != 0 && static_cast<std::int64_t>(board.gamePly()) > settings_.maxply) {
    return NULL_MOVE;
  }
  const int count = book_.readMoves();
  if (count == 0) return NULL_MOVE;
  std::array<double, BookFile::MAX_MOVES_READ> probabilities;
  weigh(count, probabilities, board.side);
  double sum = 0;
  for (int index = 0; index < count; ++index) {
    if (probabilities[index] == 0) continue;
    sum += probabilities[index];
    if (drawn <= sum) return parseMove(book_.board(), moveText(book_.move(index + 1)));
  }
  return NULL_MOVE;
}

void BookPicker::weigh(int count, std::span<double> probabilities, Color side) {
  records_.fill({});
  const std::span<const BookEntry> moves = book_.moves(count);
  const std::span records = std::span(records_).first(static_cast<std::size_t>(count));
  rejectEach(moves, side);
  rejectBesideBest(moves);
  setShares(moves);
  combine(records);
  std::ranges::transform(records, probabilities.begin(), &PickRecord::probability);
}

void BookPicker::rejectEach(std::span<const BookEntry> moves, Color side) {
  const double minScore = side == WHITE ? settings_.minscorew : settings_.minscoreb;
  for (std::size_t i = 0; i < moves.size(); ++i) {
    PickRecord& record = records_[i];
    record.score = moves[i].score();
    record.elo = moves[i].elo();
    if (book_.hasElo() && record.elo < settings_.minelo) record.rejected |= LOW_ELO;
    if (games(moves[i]) < settings_.mingames) record.rejected |= TOO_FEW_GAMES;
    if (record.score < minScore) record.rejected |= LOW_SCORE;
  }
}

void BookPicker::rejectBesideBest(std::span<const BookEntry> moves) {
  double mostGames = 0;
  double highestElo = 0;
  for (std::size_t i = 0; i < moves.size(); ++i) {
    if (records_[i].rejected != 0) continue;
    mostGames = std::max(mostGames, games(moves[i]));
    highestElo = std::max(highestElo, records_[i].elo);
  }
  const double fewestGames = std::trunc(mostGames * settings_.mingamepct);
  const double lowestElo = highestElo - settings_.maxelodelta;
  for (std::size_t i = 0; i < moves.size(); ++i) {
    PickRecord& record = records_[i];
    if (games(moves[i]) < fewestGames) record.rejected |= SMALL_GAME_SHARE;
    if (book_.hasElo() && record.elo < lowestElo) record.rejected |= ELO_FAR_BELOW_BEST;
  }
}

void BookPicker::setShares(std::span<const BookEntry> moves) {
  const std::span records = std::span(records_).first(moves.size());
  double bestScore = 0;
  for (const PickRecord& record : records) {
    if (record.rejected == 0) bestScore = std::max(bestScore, record.score);
  }
  for (std::size_t i = 0; i < moves.size(); ++i) {
    PickRecord& record = records_[i];
    if (record.rejected != 0) continue;
    record.gameShare = games(moves[i]);
    record.eloShare = book_.hasElo() ? moves[i].eloFactor : 0;
    const double behind = bestScore - record.score;
    // The best score has the full share even where no other is allowed any.
    record.scoreShare = behind == 0 ? 1 : std::max(0.0, 1 - behind / settings_.maxscoredelta);
  }
  normalise(records, &PickRecord::gameShare);
  normalise(records, &PickRecord::eloShare);
  normalise(records, &PickRecord::scoreShare);
  if (settings_.gameweight >= 0) return;
  // Prefer the rare moves; even the only one keeps a share.
  for (PickRecord& record : records) {
    if (record.rejected == 0) record.gameShare = 1.00001 - record.gameShare;
  }
  normalise(records, &PickRecord::gameShare);
}

void BookPicker::combine(std::span<PickRecord> records) const {
  for (PickRecord& record : records) {
    if (record.rejected != 0) continue;
    record.combined = settings_.gameweight * record.gameShare +
                      settings_.scoreweight * record.scoreShare +
                      (book_.hasElo() ? settings_.eloweight * record.eloShare : 0);
  }
  // When negative weights prevail, so is their sum, and it turns them round.
  normalise(records, &PickRecord::combined);
  for (PickRecord& record : records) record.combined = std::max(0.0, record.combined);
  normalise(records, &PickRecord::combined);

  const double largest = std::ranges::max(records, {}, &PickRecord::combined).combined;
  for (PickRecord& record : records) {
    record.probability = record.combined < largest * settings_.minweight ? 0 : record.combined;
  }
  normalise(records, &PickRecord::probability);
  // Without this, the first of nothing but rejected moves would count as the best.
  if (std::ranges::all_of(records, [](const PickRecord& r) { return r.rejected != 0; })) return;
  PickRecord& best = *std::ranges::max_element(records, {}, &PickRecord::probability);
  const double bestWeight = best.probability;
  for (PickRecord& record : records) record.probability *= settings_.random;
  best.probability = 1 - (1 - bestWeight) * settings_.random;
}

}  // namespace ombrin
