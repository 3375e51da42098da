#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "board/board.h"
#include "book/book_entry.h"
#include "book/book_output.h"

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

  // Grows the table to `entries` (at least 1024) entries. False when that is fewer than there are
  // now, which is reported, or when there is no memory; the table is then as before.
  bool resize(std::size_t entries);
  // Twice the present size.
  bool grow() { return resize(2 * capacity_); }

  // Counts one game for the move, making an entry for it when there is none. Grows the table when
  // the load limit is reached; false, and nothing counted, when that fails. `from` is as in
  // BookEntry.
  bool add(std::uint64_t key, std::uint8_t from, std::uint8_t to, Outcome outcome, float weight);
  // Tells the processor that this key will be added soon.
  void prefetch(std::uint64_t key) const;

  // All entries, those included that somebody has emptied.
  std::span<BookEntry> entries() { return {entries_.get(), used_}; }
  std::span<const BookEntry> entries() const { return {entries_.get(), used_}; }
  // Brings the entries into the order of a book and drops the empty ones. The table is no hash
  // table any more: nothing can be added.
  void sort();

  // Writes the entries as they stand. True when the book is complete under its name; otherwise
  // says why on standard output, and a book that was there before is as it was.
  bool save(BookOutput& output) const;

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc)
  };
  template <typename T>
  using Block = std::unique_ptr<T[], Free>;

  bool reserveEntries(std::size_t count);
  void index(std::uint32_t number);

  Board& board_;
  Block<BookEntry> entries_;      // in the order in which they came; room for loadLimit()
  Block<std::uint8_t> tags_;      // by slot of the hash table: 0 when free
  Block<std::uint32_t> numbers_;  // by slot: which entry
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
};

}  // namespace ombrin
