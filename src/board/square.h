#pragma once

#include <string>

#include "board/color.h"

namespace ombrin {

// A step between squares, or the difference of two squares, in 0x88 numbering: one rank up is +16,
// one file right is +1. Differences of two squares of the board lie within ±119.
using Delta = int;

inline constexpr Delta UP = 16;
inline constexpr Delta RIGHT = 1;

// The step of a colour's pawns.
constexpr Delta forward(Color color) {
  return color == WHITE ? UP : -UP;
}

// A square in 0x88 numbering, rank * 16 + file: a1 is 0, h1 is 7, h8 is 0x77. A step may lead off
// the board; isOnBoard() then says no.
class Square {
 public:
  constexpr Square() = default;  // a1
  constexpr explicit Square(int number) : number_(number) {}
  // File and rank from 0 to 7.
  static constexpr Square at(int file, int rank) { return Square(rank * 16 + file); }

  // The inverse of index64().
  static constexpr Square fromIndex64(int index) { return Square(index + (index & ~7)); }

  constexpr int number() const { return number_; }
  constexpr bool isOnBoard() const { return (number_ & 0x88) == 0; }
  constexpr int file() const { return number_ & 7; }
  constexpr int rank() const { return number_ >> 4; }
  // The rank as `color` counts it: 0 is its own back rank, 7 the rank it promotes on.
  constexpr int relativeRank(Color color) const { return color == WHITE ? rank() : 7 - rank(); }
  // Ranks 1 and 8 change places, 2 and 7, and so on.
  constexpr Square flipped() const { return Square(number_ ^ 0x70); }
  // The square one rank behind a square of the third rank, or before one of the fourth: a pawn that
  // has made a double step and the square it passed over are each other's.
  constexpr Square acrossDoubleStep() const { return Square(number_ ^ 0x10); }
  // 0 for a1 and every square of its colour (the dark ones), else 1.
  constexpr int shade() const { return (rank() + file()) & 1; }
  // 0 to 63, file + 8 * rank.
  constexpr int index64() const { return file() + 8 * rank(); }
  // "e4".
  std::string text() const {
    return {static_cast<char>('a' + file()), static_cast<char>('1' + rank())};
  }

  friend constexpr bool operator==(Square, Square) = default;
  friend constexpr Square operator+(Square square, Delta step) {
    return Square(square.number_ + step);
  }
  friend constexpr Square operator-(Square square, Delta step) {
    return Square(square.number_ - step);
  }
  friend constexpr Delta operator-(Square a, Square b) { return a.number_ - b.number_; }
  constexpr Square& operator+=(Delta step) {
    number_ += step;
    return *this;
  }

 private:
  int number_ = 0;
};

inline constexpr Square A1{0x00}, B1{0x01}, C1{0x02}, D1{0x03}, E1{0x04}, F1{0x05}, G1{0x06},
    H1{0x07}, A8{0x70}, B8{0x71}, C8{0x72}, D8{0x73}, E8{0x74}, F8{0x75}, G8{0x76}, H8{0x77};

// The number of moves a king needs on an empty board: the larger of the rank and file differences.
constexpr int kingDistance(Square a, Square b) {
  const int ranks = a.rank() < b.rank() ? b.rank() - a.rank() : a.rank() - b.rank();
  const int files = a.file() < b.file() ? b.file() - a.file() : a.file() - b.file();
  return ranks > files ? ranks : files;
}

}  // namespace ombrin
