#pragma once

#include <array>
#include <cstdint>

#include "material.h"
#include "table_set.h"

namespace bitbases {

// How many positions of a table have each value, and how many of these do not follow from the
// values of the positions that their moves lead to.
struct Totals {
  // By side to move.
  std::array<std::uint64_t, 2> won{};
  std::array<std::uint64_t, 2> drawn{};
  std::array<std::uint64_t, 2> lost{};
  std::uint64_t wrong = 0;
};

// Looks up every position of a table as anyone does who uses it, and checks it by its moves, one
// step ahead. The table and those of the material's successors must be held.
Totals verify(const Material& material, const TableSet& tables, int threads);

}  // namespace bitbases
