#include "book/book_entry.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin {

namespace {

// A rating of 2400 has the factor 1, and every 70 points double it.
constexpr double BASE_ELO = 2400;
constexpr double DOUBLING_ELO = 70;

void addTo(std::uint32_t& count, std::uint32_t more) {
  count += std::min(more, std::numeric_limits<std::uint32_t>::max() - count);
}

}  // namespace

double eloOf(double factor) {
  if (factor == 0) return 0;
  const double elo = BASE_ELO + DOUBLING_ELO * std::log2(factor);
  // A book's Elo of 0 comes back as a hair less, and would be shown as "-0".
  return std::abs(elo) < 0.01 ? 0 : elo;
}

float factorOf(double elo) {
  constexpr double LARGEST = std::numeric_limits<float>::max();
  return static_cast<float>(std::min(std::exp2((elo - BASE_ELO) / DOUBLING_ELO), LARGEST));
}

double BookEntry::score() const {
  if (isEmpty()) return 0;
  return (2.0 * wins + draws) / (2.0 * static_cast<double>(games()));
}

void addGames(BookEntry& entry, const BookEntry& more) {
  addTo(entry.wins, more.wins);
  addTo(entry.draws, more.draws);
  addTo(entry.losses, more.losses);
  entry.eloFactor = static_cast<float>(std::min(double{entry.eloFactor} + more.eloFactor,
                                                double{std::numeric_limits<float>::max()}));
}

bool isBefore(const BookEntry& a, const BookEntry& b) {
  if (a.key != b.key) return a.key < b.key;
  if (a.games() != b.games()) return a.games() > b.games();
  return a.from != b.from ? a.from < b.from : a.to < b.to;
}

std::string moveText(const BookEntry& entry) {
  std::string text = Square(entry.from & 0x77).text() + Square(entry.to & 0x77).text();
  if (entry.promotion == KNIGHT) text += 'N';
  if (entry.promotion == BISHOP) text += 'B';
  if (entry.promotion == ROOK) text += 'R';
  return text;
}

}  // namespace ombrin
