// The order of a table's positions.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "material.h"
#include "position.h"
#include "symmetry.h"

namespace bitbases {

// The squares above the diagonal a1-h8.
Squares squaresAboveDiagonal();

// Arranges the positions of one material in words of 64, one for every placement of all men but the
// black king; a word's bits are that king's squares. Reflections of the board are brought together:
// with pawns, one of the two placements of these that are each other's mirror image is kept;
// without, the white king stands in the triangle a1-d1-d4. Like men of one side are not told apart.
//
// A word's frame is its position with the black king's square and the side to move left open. The
// words with the pawns on the same squares are one after the other and make a slice.
class Grid {
 public:
  // The words of a slice can be ordered in several ways, from 0 to orders() - 1. In the first, for
  // solving, the white king's squares are furthest apart.
  explicit Grid(const Material& material, int order = 0);
  int orders() const;

  struct Place {
    std::uint32_t word = 0;
    // Brings the board asked about to the one that is kept.
    Symmetry symmetry;
  };
  // Men sorted, on squares of their own, pawns on the ranks 2 to 7.
  Place find(const Position& frame) const;
  // As find(), of a position: of two frames that are reflections of each other, always the same.
  Place findPosition(const Position& position) const;

  std::uint32_t words() const { return slices() * sliceSize(); }
  std::uint32_t slices() const { return static_cast<std::uint32_t>(pawns_.size()); }
  std::uint32_t sliceSize() const { return kings() * placements(); }
  std::uint32_t kings() const { return hasPawns() ? 64 : 10; }
  std::uint32_t placements() const { return placements_; }
  bool hasPawns() const { return pawnCount_ > 0; }
  // Men that are neither kings nor pawns.
  int freeMen() const { return count_ - pawnCount_; }

  // Some words have men on one square: they stand for nothing.
  Position frame(std::uint32_t word) const;
  Square king(std::uint32_t number) const;
  // -1 for a square that the white king is never brought to.
  int kingNumber(Square square) const;
  // How many words further on the slice has the frame with the man in `slot` on another square.
  std::int32_t offset(const Position& frame, int slot, Square to) const;

  // The fewest steps that the slice's pawns can have made; every pawn's move makes one more, or
  // two.
  int pawnSteps(std::uint32_t slice) const;
  // Does the diagonal's reflection keep the white king of that word's frame in place, so that of
  // the black king's squares those above the diagonal are not needed?
  bool isOnDiagonal(const Position& frame) const;
  // The word of such a frame's reflection.
  std::uint32_t reflected(const Position& frame) const;
  // Of the black king's squares those with which a word's positions are counted: each once of those
  // that are reflections of each other.
  Squares counted(std::uint32_t word) const;

 private:
  // What a slice's words are numbered by: a run of like men that are no pawns, or the white king.
  struct Part {
    int first;  // slot; or KING
    int count;
    std::uint32_t size;
    std::uint32_t stride;
  };
  static constexpr int KING = -1;
  using MenSquares = std::array<std::uint8_t, MAX_MEN>;

  std::uint32_t number(const Part& part, const MenSquares& squares) const;
  std::uint32_t pawnCode(MenSquares squares) const;
  void addParts(int order);
  void addSlices();

  Position pattern_;
  int count_ = 0;
  int pawnCount_ = 0;
  int partCount_ = 0;
  std::array<Part, MAX_MEN + 1> parts_{};  // those with the closest words first
  std::uint32_t kingStride_ = 0;
  std::uint32_t placements_ = 1;
  std::array<int, MAX_MEN> pawnSlots_{};
  std::vector<MenSquares> pawns_;  // the pawns' squares by slice
  // By pawnCode(): twice the slice, plus 1 when the mirror image is kept; -1 for no placement.
  std::vector<std::int32_t> sliceOf_;
};

}  // namespace bitbases
