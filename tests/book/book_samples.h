// Books and settings for tests, made without the code that is tested where that matters.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "book/book_file.h"
#include "book/book_format.h"
#include "book/book_key.h"

namespace ombrin {

inline void writeFile(const std::string& name, std::string_view bytes) {
  std::ofstream(name, std::ios::binary) << bytes;
}

inline std::string readFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// `move` is a text such as "e2e4".
inline BookEntry makeEntry(std::uint64_t key, std::string_view move, std::uint32_t wins,
                           std::uint32_t draws, std::uint32_t losses, float eloFactor = 0) {
  const auto square = [move](std::size_t at) {
    return static_cast<std::uint8_t>(move[at] - 'a' + 16 * (move[at + 1] - '1'));
  };
  BookEntry entry;
  entry.key = key;
  entry.wins = wins;
  entry.draws = draws;
  entry.losses = losses;
  entry.eloFactor = eloFactor;
  entry.from = square(0);
  entry.to = square(2);
  return entry;
}

// So many different moves of one position, each with one game won.
inline std::vector<BookEntry> manyMoves(std::uint64_t key, int count) {
  std::vector<BookEntry> entries;
  for (int i = 0; i < count; ++i) {
    entries.push_back(makeEntry(key, "a1a1", 1, 0, 0));
    entries.back().to = static_cast<std::uint8_t>(i + (i & ~7));
  }
  return entries;
}

// Writes the entries as they stand.
inline void writeBook(const std::string& name, const std::vector<BookEntry>& entries,
                      const BookHeader& header = {}) {
  std::ofstream file(name, std::ios::binary);
  if (header.size > 0) writeHeader(header, file);
  for (const BookEntry& entry : entries) writeRecord(entry, file, header.flags);
}

// Every record of the book, in file order.
inline std::vector<BookEntry> readBook(const std::string& name) {
  Board board;
  BookFile book(board);
  std::vector<BookEntry> entries;
  EXPECT_TRUE(book.open(name));
  book.rewind();
  BookEntry entry;
  while (book.next(entry)) entries.push_back(entry);
  return entries;
}

inline void play(Board& board, std::string_view moves) {
  while (!moves.empty()) {
    const std::size_t end = std::min(moves.find(' '), moves.size());
    const Move move = parseMove(board, moves.substr(0, end));
    ASSERT_FALSE(move.isNull()) << moves;
    makeMove(board, move);
    moves.remove_prefix(std::min(end + 1, moves.size()));
  }
}

// What `action` prints to standard output.
template <typename Action>
std::string printedBy(Action&& action) {
  testing::internal::CaptureStdout();
  action();
  std::fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

}  // namespace ombrin
