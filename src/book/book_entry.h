#pragma once

#include <cstdint>
#include <string>

namespace ombrin {

// The Elo number that an Elo factor stands for: 2400 + 70 * log2(factor), 0 for the factor 0.
double eloOf(double factor);
// And the other way round; finite for every Elo that a book can hold.
float factorOf(double elo);

// What is known of one move in one position. All counts are those of the side to move.
struct BookEntry {
  std::uint64_t key = 0;  // book_key.h
  std::uint32_t wins = 0;
  std::uint32_t draws = 0;
  std::uint32_t losses = 0;
  // The sum of the Elo weights of the games.
  float eloFactor = 0;
  // Origin in bits 0 to 6; bit 7 is set for Black's moves.
  std::uint8_t from = 0;
  std::uint8_t to = 0;
  // A PieceType, where it is known; 0 for no promotion, or for one to a queen.
  std::uint8_t promotion = 0;
  std::uint8_t unused[5] = {};

  std::uint64_t games() const { return std::uint64_t{wins} + draws + losses; }
  bool isEmpty() const { return (wins | draws | losses) == 0; }
  bool isBlackMove() const { return (from & 0x80) != 0; }
  // The same squares; the positions may differ.
  bool isSameMove(const BookEntry& other) const {
    return ((from ^ other.from) & 0x7f) == 0 && to == other.to && promotion == other.promotion;
  }
  double elo() const { return eloOf(eloFactor); }
  // From 0 to 1; 0 when there are no games.
  double score() const;
};
static_assert(sizeof(BookEntry) == 32, "table sizes are reported in units of 32 bytes");

// Adds the games of another entry, as far as they can be counted.
void addGames(BookEntry& entry, const BookEntry& more);

// The order of a book: by key, and the moves of a position by games, most first. Moves with as many
// games follow their squares, so that the order is the same on every machine.
bool isBefore(const BookEntry& a, const BookEntry& b);

// "e2e4", "e7e8N". No letter for a promotion to a queen.
std::string moveText(const BookEntry& entry);

}  // namespace ombrin
