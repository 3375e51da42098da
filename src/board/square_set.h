// Sets of squares, for questions about many squares at once.
#pragma once

#include <bit>
#include <cstdint>

#include "board/square.h"

namespace ombrin {

// Squares as White sees them or, where a side's own view is meant, with that side's back rank
// first; ahead is away from the first rank.
class SquareSet {
 public:
  constexpr SquareSet() = default;
  // Bit file + 8 * rank for each square.
  constexpr explicit SquareSet(std::uint64_t bits) : bits_(bits) {}
  // The square with that index64().
  static constexpr SquareSet of(int index) { return SquareSet(1ULL << index); }
  static constexpr SquareSet of(Square square) { return of(square.index64()); }

  constexpr bool empty() const { return bits_ == 0; }
  constexpr bool contains(int index) const { return (bits_ >> index & 1) != 0; }
  constexpr bool contains(Square square) const { return contains(square.index64()); }
  constexpr int count() const { return std::popcount(bits_); }
  constexpr bool hasSeveral() const { return (bits_ & (bits_ - 1)) != 0; }
  // Calls visit(index) for every square, in the order of the bits.
  template <typename Visitor>
  constexpr void forEach(Visitor&& visit) const {
    for (std::uint64_t rest = bits_; rest != 0; rest &= rest - 1) {
      visit(static_cast<unsigned>(std::countr_zero(rest)));
    }
  }
  template <typename Visitor>
  constexpr void forEachSquare(Visitor&& visit) const {
    forEach([&visit](unsigned index) { visit(Square::fromIndex64(static_cast<int>(index))); });
  }
  // The same squares as the other side sees them.
  constexpr SquareSet flipped() const { return SquareSet(__builtin_bswap64(bits_)); }

  // Every square one rank ahead or behind; what leaves the board is lost.
  constexpr SquareSet ahead() const { return SquareSet(bits_ << 8); }
  constexpr SquareSet behind() const { return SquareSet(bits_ >> 8); }
  // The same as a colour's pawns go.
  constexpr SquareSet ahead(Color color) const { return color == WHITE ? ahead() : behind(); }
  constexpr SquareSet behind(Color color) const { return ahead(~color); }
  // The squares to the left, to the right, and both.
  constexpr SquareSet left() const { return SquareSet((bits_ & ~FILE_A) >> 1); }
  constexpr SquareSet right() const { return SquareSet((bits_ & ~FILE_H) << 1); }
  constexpr SquareSet beside() const { return left() | right(); }

  // The squares that pawns on these attack.
  constexpr SquareSet pawnAttacks(Color color) const { return ahead(color).beside(); }

  // All squares in front of any of these on its file, and all behind.
  constexpr SquareSet allAhead() const {
    std::uint64_t squares = bits_ << 8;
    squares |= squares << 8;
    squares |= squares << 16;
    return SquareSet(squares | squares << 32);
  }
  constexpr SquareSet allBehind() const { return flipped().allAhead().flipped(); }
  // The files that hold any of these, a bit each.
  constexpr std::uint8_t files() const {
    std::uint64_t folded = bits_ | bits_ >> 32;
    folded |= folded >> 16;
    return static_cast<std::uint8_t>(folded | folded >> 8);
  }
  static constexpr SquareSet file(int file) { return SquareSet(FILE_A << file); }
  // All files whose bit is set.
  static constexpr SquareSet ofFiles(std::uint8_t bits) { return SquareSet(FILE_A * bits); }
  // The rank that is the n-th of that colour, counted from 0.
  static constexpr SquareSet rank(int n, Color color) {
    return SquareSet(0xffULL << 8 * (color == WHITE ? n : 7 - n));
  }

  // Which of the six inner files hold one of these squares, as a number; at most one a file.
  constexpr int innerFiles() const { return static_cast<int>(bits_ * (FILE_A << 1) >> 58); }

  // The same of the inner ranks, for squares of one file.
  constexpr int innerRanks(int file) const {
    return static_cast<int>(bits_ * (0x0004081020408000 >> file) >> 58);
  }

  constexpr SquareSet operator~() const { return SquareSet(~bits_); }
  friend constexpr SquareSet operator|(SquareSet a, SquareSet b) {
    return SquareSet(a.bits_ | b.bits_);
  }
  friend constexpr SquareSet operator&(SquareSet a, SquareSet b) {
    return SquareSet(a.bits_ & b.bits_);
  }
  constexpr SquareSet& operator|=(SquareSet other) { return *this = *this | other; }
  constexpr SquareSet& operator^=(SquareSet other) {
    bits_ ^= other.bits_;
    return *this;
  }
  friend constexpr bool operator==(SquareSet, SquareSet) = default;

 private:
  static constexpr std::uint64_t FILE_A = 0x0101010101010101;
  static constexpr std::uint64_t FILE_H = FILE_A << 7;

  std::uint64_t bits_ = 0;
};

static_assert(SquareSet::of(8).allAhead() ==
              (SquareSet::of(16) | SquareSet::of(24) | SquareSet::of(32) | SquareSet::of(40) |
               SquareSet::of(48) | SquareSet::of(56)));
static_assert(SquareSet::of(23).allBehind() == (SquareSet::of(7) | SquareSet::of(15)));
static_assert((SquareSet::of(56) | SquareSet::of(15)).files() == 0x81);
static_assert(SquareSet::of(8).left().empty() && SquareSet::of(15).right().empty());

}  // namespace ombrin
