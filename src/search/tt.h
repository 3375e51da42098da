#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "board/board.h"
#include "board/score.h"

namespace ombrin {

enum Bound : std::uint8_t { TT_NONE = 0, TT_EXACT = 1, TT_LOWER = 2, TT_UPPER = 3 };

// What the table knows of a position. The score is relative to the node (Score::relativeToNode).
struct TtEntry {
  Move move;
  Score score;
  int depth = 0;  // -32768 to 32767
  Bound bound = TT_NONE;
  std::uint8_t generation = 0;
};

// A search thread's own counts of what it did with the table.
struct TtCounters {
  std::uint64_t upd = 0;         // stores over an entry of the same position
  std::uint64_t stores = 0;      // stores into a victim's place
  std::uint64_t overwrites = 0;  // of those, the victim was of the current generation
};

// The transposition table that all search threads share without a lock: 16-byte entries in clusters
// of four, one cluster per cache line. An entry carries a check word made of its key and its
// contents (Hyatt and Mann, "A lockless transposition table implementation for parallel search",
// 2002), so that what two threads wrote at once does not match any position.
class Tt {
 public:
  static constexpr std::size_t DEFAULT_KB = 65536;

  explicit Tt(std::size_t kb = DEFAULT_KB);
  Tt(const Tt&) = delete;
  Tt& operator=(const Tt&) = delete;
  ~Tt();

  // resize, clear and nextGeneration: only while no search runs.

  // Takes the largest power of two of kilobytes not above `kb`, at least 256, and empties the
  // table; nothing happens when it has that size already. Tries smaller sizes when memory is short
  // and aborts when there is none.
  void resize(std::size_t kb);
  void clear();
  void nextGeneration();

  std::size_t bytes() const { return bytes_; }
  std::size_t entries() const { return bytes_ / 16; }

  // The rest from any search thread, on its own board.

  // Fills `entry` and returns true when the position is known. The captured piece of its move is
  // put right for this board; a move that cannot be put right becomes the null move.
  bool probe(const Board& board, TtEntry& entry) const;
  // Stores move, score, depth and bound; generation is filled in.
  void store(const Board& board, const TtEntry& entry, TtCounters& counters);
  void erase(const Board& board);
  void prefetch(const Board& board) const;

 private:
  struct Slot;

  Slot* slots_ = nullptr;
  std::size_t bytes_ = 0;
  std::size_t mask_ = 0;
  std::uint8_t generation_ = 0;
};

}  // namespace ombrin
