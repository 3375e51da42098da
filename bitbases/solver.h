#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "full_table.h"
#include "leaving_moves.h"

namespace bitbases {

// Computes a table, sixty-four positions at a time. First come mates and what captures, promotions
// and pawns' steps decide; from these, whatever leads to them is found in passes (Thompson,
// "Retrograde Analysis of Certain Endgames", 1986): a position is lost when all its moves lead to
// won ones, and won when one leads to a lost one. What no pass reaches is drawn. Slices are solved
// in the order of their pawns' steps, because no pawn goes back.
class Solver {
 public:
  // Takes the tables of the material's successors from `source`.
  Solver(const Material& material, const TableSource& source, int threads);

  // To be called once. `report` is called now and then, on the calling thread, with the part of the
  // slices that are done.
  std::shared_ptr<const FullTable> solve(const std::function<void(double)>& report);

  // Of solve(): the most moves that a winner needs to a mate, or to its or the loser's leaving the
  // slice with the win decided.
  int longestChain() const { return longestChain_; }

 private:
  // What is not decided yet, by word of the slice.
  struct Open {
    explicit Open(std::uint32_t size);
    // By side to move: neither known to be won, nor to be impossible.
    std::array<std::vector<Squares>, 2> notWon;
    // By side to move: nothing but moves within the slice can save it, and these have not all been
    // found to lose.
    std::array<std::vector<Squares>, 2> unsaved;
    // Found to be lost in this pass.
    std::vector<Squares> fresh;
  };

  int solveSlice(std::uint32_t slice, int threads);
  void open(Open& open, std::uint32_t slice, std::uint32_t word) const;
  // Solves for wins of one side; the number of passes.
  int findWins(Open& open, std::uint32_t slice, Color winner, int threads);
  Squares newlyLost(const Open& open, std::uint32_t slice, std::uint32_t word, Color loser) const;
  void spreadWins(Open& open, std::uint32_t slice, std::uint32_t word, Color winner) const;

  template <typename Visit>
  void forWhiteKingSteps(const Position& frame, std::uint32_t word, const Visit& visit) const;
  template <typename Visit>
  void forPieceMoves(const Position& frame, std::uint32_t word, Color color,
                     const Visit& visit) const;

  std::shared_ptr<FullTable> table_;
  const Grid& grid_;
  LeavingMoves leaving_;
  int threads_;
  int longestChain_ = 0;
};

}  // namespace bitbases
