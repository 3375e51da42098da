#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"
#include "board/score.h"
#include "eval/evaluation_breakdown.h"
#include "eval/material_table.h"
#include "eval/pawn_hash.h"
#include "platform/instructions.h"

namespace ombrin {

// The static evaluation of one board, with its cache and pawn hash. Bound to that board for life;
// both belong to one search thread. The pawn hash must have its full size (PawnHash::FULL_SIZE)
// before anything is evaluated. Nothing here can fail, and the board comes back as it was.
class Evaluator {
 public:
  explicit Evaluator(Board& board) : board_(board) {}

  // The score of the position for the side to move. Asked again for a position it has lately met,
  // it only makes pawnEntry() the position's.
  Score evaluate();

  // The same score, computed anew; neither asks nor fills the cache, and is not counted.
  Score evaluateUncached();

  // The same score in its parts. For people and tests: slower, and not counted.
  EvaluationBreakdown breakdown();

  // The pawn terms in centipawns, White minus Black; makes pawnEntry() the position's entry.
  int pawnScore();

  // Makes pawnEntry() the position's entry.
  void probePawnHash();
  // Asks the memory for that entry.
  void prefetchPawnEntry() { prefetch(&pawnHash_.slot(board_.phash)); }

  // The entry of the position most recently given to evaluate(), pawnScore() or probePawnHash().
  const PawnEntry& pawnEntry() const { return *pawnEntry_; }

  PawnHash& pawnHash() { return pawnHash_; }
  const Board& board() const { return board_; }

  // Calls of evaluate() since the counter was last set to 0.
  std::uint32_t evaluations = 0;

 private:
  static constexpr std::uint64_t CACHE_ENTRIES = 1024;
  struct CacheEntry {
    std::uint64_t key;
    std::int32_t score;
  };

  CacheEntry& cacheEntry() { return cache_[(board_.hash + board_.side) & (CACHE_ENTRIES - 1)]; }
  const MaterialFacts& materialFacts() {
    return materials_.of(board_.WhiteMaterial, board_.BlackMaterial);
  }
  int pawnScore(int phase);
  EvaluationTerms computeTerms(const MaterialFacts& material);
  int scaleOf(const MaterialFacts& material, int sum) const;

  Board& board_;
  PawnEntry* pawnEntry_ = nullptr;
  PawnHash pawnHash_;
  MaterialTable materials_;
  std::array<CacheEntry, CACHE_ENTRIES> cache_{};
};

}  // namespace ombrin
