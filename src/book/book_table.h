#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "board/board.h"
#include "book/book_entry.h"
#include "book/progress.h"

namespace ombrin {

// The table in which a book is built: positions and moves, hashed by key with linear probing, and
// never more than three quarters full. One thread at a time.
//
// The entries themselves stand one behind the other, so that memory is touched only as far as it is
// needed; the hash table holds their numbers and, apart, a few bits of their keys, which are nearly
// all that probing has to look at.
class BookTable {
 public:
  enum Outcome { WIN = 0, DRAW = 1, LOSS = 2 };

  // The board is the one on which games are replayed; it is the builder's to use.
  explicit BookTable(Board& board) : board_(board) {}

  Board& board() { return board_; }
  std::size_t capacity() const { return capacity_; }
  std::size_t used() const { return used_; }
  // The number of entries at which the table has to grow.
  std::size_t loadLimit() const { return capacity_ - capacity_ / 4; }
  // From now on the table is not to become larger than that; there is no limit at first.
  void limitBytes(std::uint64_t bytes) { mostBytes_ = bytes; }

  // Grows the table to `entries` (at least 1024) entries. False when that is fewer than there are
  // now, which is reported, or when there is no memory; the table is then as before.
  bool resize(std::size_t entries);
  // Makes sure that so many entries can be added: the table grows, to twice its size as long as the
  // limit allows that. When it cannot grow, moves are let go: those played once, those that have
  // been there longest first, until there is room for a while; if too few were played once, those
  // played twice, and so on. False when there is no room to be made.
  bool makeRoomFor(std::size_t entries);
  // Would makeRoomFor() have anything to do?
  bool hasRoomFor(std::size_t entries) const { return used_ + entries <= loadLimit(); }
  // The moves that were let go.
  std::int64_t dropped() const { return dropped_; }

  // Counts one game for the move, which has none itself, or all games of an entry of another book.
  // There is room, see makeRoomFor().
  void add(const BookEntry& move, Outcome outcome, float weight);
  void add(const BookEntry& more);
  // Tells the processor that this key will be added soon.
  void prefetch(std::uint64_t key) const;

  // All entries, those included that somebody has emptied.
  std::span<BookEntry> entries() { return {entries_.get(), used_}; }
  std::span<const BookEntry> entries() const { return {entries_.get(), used_}; }
  // Brings the entries into the order of a book and drops the empty ones. The table is no hash
  // table any more: nothing can be added.
  void sort(Progress& progress);

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc)
  };
  template <typename T>
  using Block = std::unique_ptr<T[], Free>;

  bool reserveEntries(std::size_t count);
  BookEntry& findOrMake(const BookEntry& move);
  void index(std::uint32_t number);
  bool grow();
  bool dropRare(std::size_t wanted);
  void keepOnly(std::uint64_t fewest, std::size_t mostOfFewest);

  Board& board_;
  Block<BookEntry> entries_;      // in the order in which they came; room for loadLimit()
  Block<std::uint8_t> tags_;      // by slot of the hash table: 0 when free
  Block<std::uint32_t> numbers_;  // by slot: which entry
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  std::uint64_t mostBytes_ = UINT64_MAX;
  std::int64_t dropped_ = 0;
};

}  // namespace ombrin
