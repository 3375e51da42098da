// The bytes of a Polyglot book: records of 16 bytes in ascending order of keys, with nothing in
// front of them. All numbers are big-endian.
#pragma once

#include <cstdint>

#include "book/book_entry.h"

namespace ombrin::polyglot {

inline constexpr int RECORD_SIZE = 16;
inline constexpr std::uint32_t LARGEST_WEIGHT = 0xffff;

// The move's two bytes and back again: destination, origin and promotion, from the lowest bit.
// Castling is written as the king taking his rook; only a board can tell.
std::uint16_t moveOf(const BookEntry& entry);
void setMove(BookEntry& entry, std::uint16_t move);

// Can the two bytes be a move?
bool isSane(std::uint16_t move);

// The weight stands for games of which nothing but the number is known: they count as drawn.
std::uint32_t weightOf(const BookEntry& entry);

}  // namespace ombrin::polyglot
