#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>

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
// step ahead, in its own way: nothing but the geometry of the board is the solver's, too.
class Verifier {
 public:
  Verifier(const TableSet& tables, int threads);
  ~Verifier();

  // The table and those of the material's successors must be held.
  Totals verify(const Material& material);

 private:
  class Values;
  class Checker;

  const Values& capturedTo(const Position& sorted);

  const TableSet& tables_;
  int threads_;
  // Of at most four men, by number, once they have been needed.
  std::map<int, std::unique_ptr<const Values>> values_;
};

}  // namespace bitbases
