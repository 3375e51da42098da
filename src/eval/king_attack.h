#pragma once

#include <algorithm>

#include "eval/board_sets.h"
#include "eval/king_attack_tables.h"

namespace ombrin {

// How much the pieces of ATTACKER bear on the enemy king, looking through what could move out of
// the way at a cost. Every function takes the square of a piece.
template <Color ATTACKER>
class KingAttack {
 public:
  KingAttack(const Board& board, const BoardSets& sets)
      : board_(board),
        occupied_(sets.occupied()),
        king_(sets.king(DEFENDER)),
        blockedPawns_(sets.pawns(ATTACKER) & sets.occupied().behind(ATTACKER)) {
    const SquareSet unguarded = ~sets.pawnAttacks(DEFENDER);
    stuckPawns_ =
        sets.pawns(ATTACKER) & unguarded & (sets.pawns(DEFENDER) | unguarded).behind(ATTACKER);
  }

  unsigned knight(unsigned index) const { return 3U * KNIGHT_BEARING[king_][index]; }
  unsigned bishop(unsigned index) const { return 3 * slider<BISHOP>(index, blockedPawns_); }
  unsigned rook(unsigned index) const { return 4 * slider<ROOK>(index, stuckPawns_); }
  unsigned queen(unsigned index) const { return 8 * slider<QUEEN>(index, stuckPawns_); }

 private:
  static constexpr Color DEFENDER = ~ATTACKER;

  // Men in `closed` never get out of the way.
  template <PieceType TYPE>
  unsigned slider(unsigned index, SquareSet closed) const {
    const Approach& approach = approachesTo<TYPE>(king_)[index];
    if ((approach.path & occupied_).empty()) return approach.worth;
    if (!(approach.path & closed).empty()) return 0;
    return lookThrough<TYPE>(board_, approach);
  }

  // What is left of an approach after paying for the obstacles. Seldom needed, and kept out of the
  // walk over the pieces, which wants the registers.
  template <PieceType TYPE>
  [[gnu::noinline]] static unsigned lookThrough(const Board& board, const Approach& approach) {
    const SquareSet occupants = TYPE == QUEEN ? board.occupied() : board.byType[TYPE];
    const int loss = TYPE == QUEEN ? 2 : 4;
    const int worth = approach.worth - (occupants.contains(approach.end) ? loss : 0);
    return static_cast<unsigned>(std::max(worth - costOf<TYPE>(board, approach.path), 0));
  }

  // What it costs to get the men on a path out of the way.
  template <PieceType TYPE>
  static int costOf(const Board& board, SquareSet path) {
    const SquareSet own = path & board.byColor[ATTACKER];
    const SquareSet enemy = path & board.byColor[DEFENDER];
    const SquareSet ownPawns = own & board.byType[PAWN];
    const SquareSet enemyPawns = enemy & board.byType[PAWN];
    // Where the king's pawns capture to.
    const SquareSet left = board.men(DEFENDER, PAWN).ahead(DEFENDER).left();
    const SquareSet right = board.men(DEFENDER, PAWN).ahead(DEFENDER).right();
    if constexpr (TYPE == BISHOP) {
      return 2 * (own.count() + enemy.count() + ownPawns.count() +
                  (enemy & board.byType[BISHOP]).count() + (left & enemyPawns).count() +
                  (right & enemyPawns).count());
    }
    const SquareSet blocked = ownPawns & ~(left | right) & board.occupied().behind(ATTACKER);
    const SquareSet helpers = own & (board.byType[ROOK] | board.byType[QUEEN]);
    const int ofOwn = 2 * own.count() + 4 * blocked.count() - 6 * helpers.count();
    if constexpr (TYPE == QUEEN) {
      return ofOwn + 3 * enemy.count() + 4 * ((left & enemy).count() + (right & enemy).count());
    }
    // What an attacker's pawn can capture is no obstacle to a rook.
    const SquareSet firm = enemy & ~board.men(ATTACKER, PAWN).pawnAttacks(ATTACKER);
    return ofOwn +
           2 * (firm.count() + (firm & enemyPawns).count() + (enemy & board.byType[ROOK]).count() +
                (left & firm).count() + (right & firm).count());
  }

  const Board& board_;
  SquareSet occupied_;
  unsigned king_;
  SquareSet blockedPawns_;  // own pawns with a man in front
  SquareSet stuckPawns_;    // own pawns that cannot capture, nor go to where they can
};

}  // namespace ombrin
