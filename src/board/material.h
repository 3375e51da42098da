#pragma once

#include <array>
#include <cstdint>

#include "board/piece.h"

namespace ombrin {

// A side's material signature: how many men of each type it has, in one word that is the sum of
// one increment per man. The king counts nothing, so a bare king has the signature 0.
//
//   bits 0-7 units of the pieces (knight 3, bishop 3, rook 5, queen 10), 8-11 pawns, 12-15 knights,
//   16-19 bishops, 20-23 rooks, 24-27 queens, 28-31 knights, bishops, rooks and queens together
class Material {
 public:
  constexpr Material() = default;
  constexpr explicit Material(std::uint32_t word) : word_(word) {}
  // What one man of that type adds.
  static constexpr Material of(PieceType type) {
    constexpr std::array<std::uint32_t, 8> INCREMENTS = {0, 0x100,      0x10001003, 0,
                                                         0, 0x10010003, 0x10100005, 0x1100000a};
    return Material(INCREMENTS[type]);
  }

  constexpr std::uint32_t word() const { return word_; }
  constexpr int units() const { return static_cast<int>(word_ & 0xff); }
  constexpr int pawns() const { return field(8); }
  constexpr int knights() const { return field(12); }
  constexpr int bishops() const { return field(16); }
  constexpr int rooks() const { return field(20); }
  constexpr int queens() const { return field(24); }
  constexpr int pieces() const { return field(28); }
  constexpr int minors() const { return knights() + bishops(); }
  // Pawns and pieces without the king.
  constexpr int men() const { return pawns() + pieces(); }
  // Pieces and pawns in pawn units.
  constexpr int total() const { return units() + pawns(); }
  constexpr bool isBareKing() const { return word_ == 0; }
  constexpr bool hasPieces() const { return (word_ & 0x0ffff000) != 0; }
  constexpr bool hasMinor() const { return (word_ & 0x000ff000) != 0; }
  constexpr bool hasSlider() const { return (word_ & 0x0fff0000) != 0; }
  constexpr bool hasQueen() const { return (word_ & 0x0f000000) != 0; }
  // Enough to mate or promote by itself.
  constexpr bool hasPawnRookOrQueen() const { return (word_ & 0x0ff00f00) != 0; }
  // Do both have as many rooks and as many queens, whatever else they have?
  constexpr bool sameMajors(Material other) const {
    return ((word_ ^ other.word_) & 0x0ff00000) == 0;
  }

  constexpr Material& operator+=(Material other) {
    word_ += other.word_;
    return *this;
  }
  constexpr Material& operator-=(Material other) {
    word_ -= other.word_;
    return *this;
  }
  friend constexpr bool operator==(Material, Material) = default;

 private:
  constexpr int field(int shift) const { return static_cast<int>((word_ >> shift) & 15); }

  std::uint32_t word_ = 0;
};

}  // namespace ombrin
