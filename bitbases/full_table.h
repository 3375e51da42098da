// A whole table in memory, with the value of every position.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "grid.h"
#include "material.h"

namespace bitbases {

// Of the positions of one frame, those won and those lost for the side to move; the others that are
// legal are drawn.
struct ValueSets {
  Squares won = 0;
  Squares lost = 0;
};

struct FullTable {
  // Of any material, canonical or not; all positions are drawn.
  explicit FullTable(const Material& itsMaterial) : material(itsMaterial), grid(itsMaterial) {}

  void makeRoom(Color side) {
    won[side].resize(grid.words());
    lost[side].resize(grid.words());
  }

  // Men sorted. Bits that stand for no legal position are 0 in both sets.
  ValueSets at(const Position& frame, Color side) const {
    const Grid::Place place = grid.find(frame);
    const ValueSets kept = {won[side][place.word], lost[side][place.word]};
    if (place.symmetry.isNone()) return kept;
    return {undone(place.symmetry, kept.won), undone(place.symmetry, kept.lost)};
  }

  Material material;
  Grid grid;
  // By side to move, when there is room for it, and word.
  std::array<std::vector<Squares>, 2> won;
  std::array<std::vector<Squares>, 2> lost;
};

// Gives the table of a material, canonical or not, with the values of the positions with that side
// to move at the least.
using TableSource =
    std::function<std::shared_ptr<const FullTable>(const Material& material, Color side)>;

}  // namespace bitbases
