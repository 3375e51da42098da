#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "layout.h"
#include "material.h"
#include "moves.h"
#include "table_set.h"

namespace bitbases {

// Computes a table by retrograde analysis (Thompson, "Retrograde Analysis of Certain Endgames",
// 1986): positions decided by mate, capture or promotion first, then again and again the positions
// from which decided ones can be reached. A position is won when one move leads to a lost one, and
// lost when every move has been found to lead to a won one, which a count of the moves tells.
// Whatever is never decided is a draw.
class Solver {
 public:
  // The tables of the material's successors must be held.
  Solver(const Material& material, const TableSet& tables, int threads);

  // The value of every position by its number; draws for numbers that stand for no position. To be
  // called once. `report` is called now and then, on the calling thread, with the part of the
  // positions that have been looked at (below 1), later with the number of passes made (from 1).
  std::vector<std::uint8_t> solve(const std::function<void(double)>& report);

 private:
  // Positions of a block are scanned together when one of them has news.
  static constexpr std::uint64_t BLOCK = 4096;

  // What is known of a position, in one byte: up to 200 the number of quiet moves not yet found to
  // lose, of a position that nothing has decided.
  static constexpr std::uint8_t HAS_DRAW = 201;  // undecided, and can never be lost
  static constexpr std::uint8_t NEWLY_LOST = 202;
  static constexpr std::uint8_t NEWLY_WON = 203;
  static constexpr std::uint8_t LOST = 204;
  static constexpr std::uint8_t WON = 205;
  static constexpr std::uint8_t IMPOSSIBLE = 206;

  std::optional<Value> decidedValue(const Position& position, const Move& move) const;
  std::uint8_t firstState(const Position& position) const;
  void classify(std::uint64_t begin, std::uint64_t end);
  // One visit to every block with news; false when there was none.
  bool pass();
  void visitPredecessors(const Position& position, bool isLost);
  void visitPawnPredecessors(const Position& position, int slot, bool isLost);
  void inform(const Position& predecessor, bool isLost);

  Layout layout_;
  const TableSet& tables_;
  int threads_;
  std::vector<std::uint8_t> states_;
  std::vector<std::uint8_t> hasNews_;  // by block
};

}  // namespace bitbases
