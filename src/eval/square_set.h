// Sets of squares, for questions about whole files and neighbourhoods of pawns at once.
#pragma once

#include <bit>
#include <cstdint>

#include "board/square.h"

namespace ombrin {

// Squares as one side sees them: its own back rank is the first, and ahead is up.
class SquareSet {
 public:
  constexpr SquareSet() = default;
  // The square with that tableIndex (file + 8 * relative rank).
  static constexpr SquareSet of(int index) { return SquareSet(1ULL << index); }

  constexpr bool empty() const { return bits_ == 0; }
  constexpr int count() const { return std::popcount(bits_); }
  // The same squares as the other side sees them.
  constexpr SquareSet flipped() const { return SquareSet(__builtin_bswap64(bits_)); }

  // Every square one rank ahead or behind; what leaves the board is lost.
  constexpr SquareSet ahead() const { return SquareSet(bits_ << 8); }
  constexpr SquareSet behind() const { return SquareSet(bits_ >> 8); }
  // The squares to the left, to the right, and both.
  constexpr SquareSet left() const { return SquareSet((bits_ & ~FILE_A) >> 1); }
  constexpr SquareSet right() const { return SquareSet((bits_ & ~FILE_H) << 1); }
  constexpr SquareSet beside() const { return left() | right(); }

  // All squares of the file of the square `index`, in front of it and behind it.
  static constexpr SquareSet allAhead(int index) { return SquareSet(FILE_A << 8 << index); }
  static constexpr SquareSet allBehind(int index) { return SquareSet(FILE_H >> 8 >> (63 - index)); }
  static constexpr SquareSet file(int file) { return SquareSet(FILE_A << file); }

  friend constexpr SquareSet operator|(SquareSet a, SquareSet b) {
    return SquareSet(a.bits_ | b.bits_);
  }
  friend constexpr SquareSet operator&(SquareSet a, SquareSet b) {
    return SquareSet(a.bits_ & b.bits_);
  }
  constexpr SquareSet& operator|=(SquareSet other) { return *this = *this | other; }
  friend constexpr bool operator==(SquareSet, SquareSet) = default;

 private:
  static constexpr std::uint64_t FILE_A = 0x0101010101010101;
  static constexpr std::uint64_t FILE_H = FILE_A << 7;

  constexpr explicit SquareSet(std::uint64_t bits) : bits_(bits) {}

  std::uint64_t bits_ = 0;
};

static_assert(SquareSet::allAhead(8) ==
              (SquareSet::of(16) | SquareSet::of(24) | SquareSet::of(32) | SquareSet::of(40) |
               SquareSet::of(48) | SquareSet::of(56)));
static_assert(SquareSet::allBehind(23) == (SquareSet::of(7) | SquareSet::of(15)));
static_assert(SquareSet::of(8).left().empty() && SquareSet::of(15).right().empty());

}  // namespace ombrin
