#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "board/board.h"
#include "board/make_move.h"
#include "board/score.h"
#include "platform/instructions.h"
#include "search/counter.h"

namespace ombrin {

enum Bound : std::uint8_t { TT_NONE = 0, TT_EXACT = 1, TT_LOWER = 2, TT_UPPER = 3 };

// What the table knows of a position. The score is relative to the node (Score::relativeToNode).
struct TtEntry {
  Move move;
  Score score;    // -32768 to 32767
  int depth = 0;  // -32768 to 32767
  Bound bound = TT_NONE;
  std::uint8_t generation = 0;
};

// A search thread's own counts of what it did with the table.
struct TtCounters {
  Counter upd;         // stores over an entry of the same position
  Counter stores;      // stores into a victim's place
  Counter overwrites;  // of those, the victim was of the current generation
};

// The transposition table that all search threads share without a lock: 16-byte entries in clusters
// of four, one cluster per cache line. An entry carries a check word made of its key and its
// contents (Hyatt and Mann, "A lockless transposition table implementation for parallel search",
// 2002), so that what two threads wrote at once does not match any position.
class Tt {
 public:
  static constexpr std::size_t DEFAULT_KB = 65536;

  explicit Tt(std::uint64_t kb = DEFAULT_KB);
  Tt(const Tt&) = delete;
  Tt& operator=(const Tt&) = delete;
  ~Tt();

  // resize, clear, makeReady and nextGeneration: only while no search runs.

  // Takes the largest power of two of kilobytes not above `kb`, at least 256, and empties the
  // table; nothing happens when it has that size already. Tries smaller sizes when memory is short
  // and aborts when there is none. Takes no time: the system only promises the memory until it is
  // used.
  void resize(std::uint64_t kb);
  // Empties the table, with as many threads as there are processors.
  void clear();
  // Has the system find the memory of a table that nothing has used yet, so that no search needs to
  // wait for it. Keeps what a used one holds.
  void makeReady();
  void nextGeneration() {
    ++generation_;
    isUnused_ = false;
  }

  std::size_t bytes() const { return bytes_; }
  std::size_t entries() const { return bytes_ / ENTRY_BYTES; }

  // The rest from any search thread, on its own board.

  // Fills `entry` and returns true when the position is known. The captured piece of its move is
  // put right for this board; a move that cannot be put right becomes the null move.
  bool probe(const Board& board, TtEntry& entry) const;
  // Stores move, score, depth and bound; generation is filled in.
  void store(const Board& board, const TtEntry& entry, TtCounters& counters);
  void erase(const Board& board);
  // Asks the memory for the entries of the position behind an ordinary move, before it is made.
  void prefetchAfter(const Board& board, Move move) const {
    prefetch(&slots_[index(keyAfter(board, move), ~board.side)]);
  }
  // The same behind a null move that ends no chance to capture en passant.
  void prefetchAfterNullMove(const Board& board) const {
    prefetch(&slots_[index(board.hash, ~board.side)]);
  }

 private:
  static constexpr std::size_t ENTRY_BYTES = 16;
  static constexpr std::size_t CLUSTER = 4;

  // One entry in two halves: check word and move; score, depth, 16 unused bits, generation, bound.
  struct Slot {
    std::uint64_t checkAndMove;
    std::uint64_t payload;

    std::uint32_t check() const { return static_cast<std::uint32_t>(checkAndMove); }
    std::uint32_t move() const { return static_cast<std::uint32_t>(checkAndMove >> 32); }
    std::uint32_t scoreAndDepth() const { return static_cast<std::uint32_t>(payload); }
    std::uint32_t key() const { return check() ^ move() ^ scoreAndDepth(); }
    int score() const { return static_cast<std::int16_t>(payload); }
    int depth() const { return static_cast<std::int16_t>(payload >> 16); }
    std::uint8_t generation() const { return static_cast<std::uint8_t>(payload >> 48); }
    Bound bound() const { return static_cast<Bound>(payload >> 56); }
  };
  static_assert(sizeof(Slot) == ENTRY_BYTES);
  struct Release {
    void operator()(void* block) const;
  };

  // The position's cluster is this slot and those at index ^ 1, ^ 2 and ^ 3.
  std::size_t index(std::uint64_t hash, Color side) const { return (hash + 4 * side) & mask_; }
  std::size_t index(const Board& board) const { return index(board.hash, board.side); }
  static Slot pack(std::uint32_t key, const TtEntry& entry, std::uint8_t generation);
  static bool improves(const TtEntry& entry, Slot old);
  Slot read(std::size_t index) const;
  void write(std::size_t index, Slot contents);
  bool obtain();

  Slot* slots_ = nullptr;
  std::size_t mask_ = 0;
  std::size_t bytes_ = 0;
  std::uint8_t generation_ = 0;
  bool isUnused_ = true;
  std::unique_ptr<void, Release> block_;
};

}  // namespace ombrin
