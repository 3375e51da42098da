#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "board/square.h"

namespace ombrin {

// What the pawns of one colour tell the other terms of the evaluation, and the search.
struct PawnSideInfo {
  std::uint8_t filesWithoutPawns;  // bit f: the colour has no pawn on file f
  std::uint8_t passedCount;
  std::array<std::uint8_t, 8> passed;  // squares (0x88), the first passedCount are valid, in the
                                       // order of the piece list
  std::uint8_t passedFiles;            // bit f: a passed pawn stands on file f
  std::uint8_t lightSquarePawns;       // own pawns on light squares
  std::array<std::int8_t, 3> cover;    // by king zone (files a-c, d-e, f-h): the shelter of the own
                                       // pawns less the storm of the enemy pawns
  std::array<std::int8_t, 8> rookOnFile;  // what an own rook on that file gains, in centipawns

  bool hasPawns() const { return filesWithoutPawns != 0xff; }
  bool hasPawnOn(int file) const { return (filesWithoutPawns >> file & 1) == 0; }
  // The outermost files that hold a pawn; only when there is one.
  int firstFile() const { return std::countr_one(filesWithoutPawns); }
  int lastFile() const { return 7 - std::countl_one(filesWithoutPawns); }
  Square passedPawn(int n) const { return Square(passed[n]); }
};

// One pawn structure: a cache line.
struct alignas(64) PawnEntry {
  std::uint32_t key;  // high half of the board's phash
  std::int16_t middlegame;
  std::int16_t endgame;               // structure scores in centipawns, White minus Black
  std::array<PawnSideInfo, 2> sides;  // by colour
};
static_assert(sizeof(PawnSideInfo) == 23 && sizeof(PawnEntry) == 64);

// The pawn structures a search thread has met, by pawn key. One thread at a time.
class PawnHash {
 public:
  // The number of entries that the evaluation needs; index() is made for it.
  static constexpr std::size_t FULL_SIZE = 65536;

  PawnHash() { resize(1); }

  // Takes the largest power of two not above `entries` (at least 1) and forgets everything. Running
  // out of memory prints a line to standard error and aborts, because a search cannot do without.
  void resize(std::size_t entries);
  std::size_t entries() const { return entries_; }

  // The place of a pawn key, whoever's entry it holds now.
  PawnEntry& slot(std::uint64_t phash) { return table_[phash & (FULL_SIZE - 1)]; }

  std::uint32_t hits = 0;
  std::uint32_t misses = 0;

 private:
  // The C library's memory, because its failure can be told from any other.
  struct Free {
    void operator()(void* block) const;
  };
  std::unique_ptr<void, Free> block_;
  PawnEntry* table_ = nullptr;  // the first 256-byte boundary in the block
  std::size_t entries_ = 0;
};

}  // namespace ombrin
