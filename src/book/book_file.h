#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>

#include "board/board.h"
#include "book/book_entry.h"
#include "book/book_format.h"
#include "book/book_kind.h"

namespace ombrin {

// A book on disk, asked about the position of one board. A look-up costs O(log n) reads; nothing is
// kept in memory but the moves found last. One thread at a time, the one that owns the board.
//
//   BookFile book(board);
//   if (book.open("games.obk")) {
//     const int count = book.readMoves();
//     for (const BookEntry& move : book.moves(count)) use(move);
//   }
class BookFile {
 public:
  static constexpr int MAX_MOVES_READ = 32;

  explicit BookFile(const Board& board) : board_(board) {}

  // Closes what was open. False, and nothing open, when the path is no file that can be read, or
  // no book; problem() then says what is wrong with the file, and nothing when there is none. A
  // file without a header is of the kind that its name says.
  bool open(const std::string& path);
  const std::string& problem() const { return problem_; }
  void close();
  bool isOpen() const { return file_.is_open(); }

  const Board& board() const { return board_; }
  const BookHeader& header() const { return header_; }
  bool hasElo() const { return (header_.flags & BOOK_ELO) != 0; }
  // Does it tell games won from games lost?
  bool hasScore() const { return (header_.flags & BOOK_WEIGHT) == 0; }
  BookKind kind() const { return hasScore() ? BookKind::OBK : BookKind::POLYGLOT; }
  // True when positions are filed under their legacy keys.
  bool isLegacy() const { return isLegacy_; }
  // What the file's length says, header included: exact unless the records are no longer than the
  // header. 0 when nothing is open.
  std::uint32_t recordCount() const { return statedRecords_; }
  bool isEmpty() const { return records_ == 0; }

  // Leaves the file at the first record of that key. False when it is not in the book.
  bool find(std::uint64_t key);

  // Reads the moves of the board's position into slots 1 to n and returns n, 0 when the position is
  // not in the book or no book is open. Records that split one move become one again, and castling
  // is the king's move by two files.
  int readMoves();
  // 1 to MAX_MOVES_READ.
  const BookEntry& move(int slot) const { return slots_[slot - 1]; }
  BookEntry& move(int slot) { return slots_[slot - 1]; }
  std::span<const BookEntry> moves(int count) const {
    return std::span(slots_).first(static_cast<std::size_t>(count));
  }

  // Reading from end to end: rewind, then next() until it says no.
  void rewind();
  // The next record, with its key.
  bool next(BookEntry& entry);

 private:
  void seekRecord(std::uint64_t index);
  std::uint64_t keyOfBoard() const;
  void placeCastling(BookEntry& entry) const;
  bool readKeyOf(std::uint64_t index, std::uint64_t& key);

  BookHeader header_;
  const Board& board_;
  std::ifstream file_;
  std::uint32_t statedRecords_ = 0;
  std::uint64_t records_ = 0;  // those that are there in full
  bool isLegacy_ = false;
  std::string problem_;
  std::array<BookEntry, MAX_MOVES_READ> slots_;
};

}  // namespace ombrin
