// The random numbers behind the hash keys (Zobrist, "A New Hashing Method with Application for Game
// Playing", 1970).
#pragma once

#include <array>
#include <cstdint>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin {

namespace zobrist {

// SplitMix64 (Steele, Lea and Flood, "Fast Splittable Pseudorandom Number Generators", 2014) from a
// fixed seed. Book files hold keys made of these numbers, so they never change.
consteval std::array<std::uint64_t, 1024> make() {
  std::array<std::uint64_t, 1024> table{};
  std::uint64_t state = 0x6f6d6272696e2e31;
  for (std::uint64_t& entry : table) {
    state += 0x9e3779b97f4a7c15;
    std::uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    entry = z ^ (z >> 31);
  }
  return table;
}

// Eight rows of 128 entries: row 0 for en-passant squares and castling, then a row per piece type.
// Entries whose square has bit 3 set are no squares of the board; Black's pieces use those.
inline constexpr std::array<std::uint64_t, 1024> Z = make();

// Where a piece's keys start, by piece index.
consteval std::array<std::uint16_t, 256> makeRows() {
  std::array<std::uint16_t, 256> rows{};
  for (int slot = 0; slot < 64; ++slot) {
    const int type = piece_tables::TYPES[slot];
    if (type == NO_PIECE_TYPE) continue;
    rows[64 + slot] = static_cast<std::uint16_t>(type * 128);
    rows[128 + slot] = static_cast<std::uint16_t>(type * 128 + 8);
  }
  return rows;
}
inline constexpr std::array<std::uint16_t, 256> ROWS = makeRows();

consteval std::array<std::uint64_t, 16> makeCastling() {
  std::array<std::uint64_t, 16> keys{};
  for (int rights = 0; rights < 16; ++rights) {
    for (int bit = 0; bit < 4; ++bit) {
      if ((rights >> bit & 1) != 0) keys[rights] ^= Z[8 + bit];
    }
  }
  return keys;
}
inline constexpr std::array<std::uint64_t, 16> CASTLING = makeCastling();

}  // namespace zobrist

constexpr std::uint64_t pieceKey(Piece piece, Square square) {
  return zobrist::Z[zobrist::ROWS[piece.index()] + square.number()];
}

constexpr std::uint64_t enPassantKey(Square square) {
  return zobrist::Z[square.number()];
}

// The key of a set of castling rights (0 to 15). Linear: the keys of two sets, XORed, are the key
// of the rights that one set has and the other has not.
constexpr std::uint64_t castleKey(int rights) {
  return zobrist::CASTLING[rights];
}

}  // namespace ombrin
