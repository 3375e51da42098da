// The moves after which a position is in another table, or in another slice of its own.
#pragma once

#include <array>
#include <memory>

#include "frame_sets.h"
#include "full_table.h"

namespace bitbases {

// What such moves bring the side to move, for all positions of a frame. Bits of positions that are
// not legal may have any value.
struct Leaving {
  Squares won = 0;      // one wins
  Squares saved = 0;    // one does not lose
  Squares movable = 0;  // there is one that is legal
};

// Captures, promotions and pawns' moves of one material's positions, for any number of threads.
class LeavingMoves {
 public:
  // Takes the tables that captures lead to from `source`, and, unless `own` is null, those of
  // promotions. `own` is the material's table, which the pawns' steps look into.
  LeavingMoves(const Material& material, const TableSource& source, const FullTable* own);

  // Captures only, those that promote included, those en passant not.
  Leaving captures(const Position& frame, Color side) const;
  // All. The slices that the pawns' steps lead to must be complete in `own`.
  Leaving all(const Position& frame, Color side) const;

 private:
  static constexpr int NONE = 3;  // in place of a slot

  struct Next {
    std::shared_ptr<const FullTable> table;  // null for bare kings
    // By slot after the move: the slot before.
    std::array<int, MAX_MEN> slots{};
  };
  struct Values {
    Squares legal = 0;
    ValueSets sets;
  };

  const Next& next(int captured, int promoted, Type type) const {
    return next_[captured][promoted][type];
  }
  void addNext(const TableSource& source, int captured, int promoted, Type type);
  Values values(const Next& next, const Position& frame, Color side) const;
  Values afterDoubleStep(const Position& frame, int slot) const;
  void addCaptures(const Position& frame, int slot, Leaving& leaving) const;
  void addKingCaptures(const Position& frame, Color side, Leaving& leaving) const;
  void addPushes(const Position& frame, int slot, Leaving& leaving) const;
  void addPawnMove(const Position& frame, int slot, int captured, Leaving& leaving) const;

  Position pattern_;
  const FullTable* own_;
  // By the slot captured, the slot promoted and the type of this.
  std::array<std::array<std::array<Next, PAWN>, MAX_MEN + 1>, MAX_MEN + 1> next_;
};

}  // namespace bitbases
