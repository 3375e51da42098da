#pragma once

#include <cstdint>

#include "material.h"
#include "table_set.h"

namespace bitbases {

// How many positions of a table have each value, and how many of these do not follow from the
// values of the positions that their moves lead to.
struct Totals {
  std::uint64_t won = 0;
  std::uint64_t drawn = 0;
  std::uint64_t lost = 0;
  std::uint64_t wrong = 0;
};

// Checks every position of a table by its moves, one step ahead. The table and those of the
// material's successors must be held.
Totals verify(const Material& material, const TableSet& tables, int threads);

}  // namespace bitbases
