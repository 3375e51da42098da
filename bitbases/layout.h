// The order of a table's positions.
#pragma once

#include <array>
#include <cstdint>

#include "geometry.h"
#include "material.h"
#include "position.h"

namespace bitbases {

// Numbers the positions of one material. Positions that are reflections of each other share one
// number: the white king is brought to the files a to d when there are pawns, else into the
// triangle a1-d1-d4. Like men of one side are not told apart.
//
// An small value that any number of threads may use.
class Layout {
 public:
  Layout() = default;
  explicit Layout(const Material& material);

  // One more than the largest number.
  std::uint64_t size() const { return std::uint64_t{2} * kingPairs_ * placements_; }
  // Of a position of exactly this material, sorted, kings not adjacent, pawns on the ranks 2 to 7.
  std::uint64_t index(const Position& position) const;
  // The position of that number. Some numbers stand for no position (men on one square) or for one
  // that has another number: isNumbered() tells.
  Position position(std::uint64_t index) const;
  // Do all men stand on squares of their own, and is `index` the position's number?
  bool isNumbered(const Position& position, std::uint64_t index) const;

 private:
  // A run of like men.
  struct Group {
    std::uint8_t first;
    std::uint8_t count;
    std::uint8_t lowest;  // square
    std::uint32_t size;   // placements
  };

  // The number of the men's squares, each XORed with `mask` and then, if asked, reflected in the
  // diagonal a1-h8.
  std::uint32_t placement(const Position& position, Square mask, bool transposed) const;

  bool hasPawns_ = false;
  std::uint32_t kingPairs_ = 0;
  std::uint32_t placements_ = 0;  // per pair of kings
  int groupCount_ = 0;
  std::array<Group, MAX_MEN> groups_{};
  Position pattern_;
};

}  // namespace bitbases
