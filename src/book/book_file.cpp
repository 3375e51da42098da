#include "book/book_file.h"

#include <filesystem>
#include <utility>

#include "book/book_check.h"
#include "book/book_key.h"
#include "book/filed_move.h"
#include "book/polyglot_key.h"
#include "util/file_system.h"

namespace ombrin {

namespace {

// Enough for 32 moves with the largest counts, each split into records of 65535; more of them are
// no position of a sound book, and a pick has to end.
constexpr int MAX_RECORDS_READ = BookFile::MAX_MOVES_READ * 65538;

}  // namespace

bool BookFile::open(const std::string& path) {
  close();
  std::error_code error;
  if (!std::filesystem::is_regular_file(pathOf(path), error)) return false;
  const std::uint64_t length = std::filesystem::file_size(pathOf(path), error);
  if (error) return false;
  file_.open(path, std::ios::binary);
  if (!file_) return false;

  readHeader(file_, header_);
  if (header_.size == 0 && kindOfName(path) == BookKind::POLYGLOT) {
    header_ = BookHeader::polyglot();
  }
  if (std::string problem = bookProblem(file_, header_, length); !problem.empty()) {
    close();
    problem_ = std::move(problem);
    return false;
  }
  const auto recordSize = static_cast<std::uint64_t>(header_.recordSize);
  statedRecords_ = static_cast<std::uint32_t>(length / recordSize);
  records_ = (length - static_cast<std::uint64_t>(header_.size)) / recordSize;
  isLegacy_ = kind() == BookKind::OBK && find(startLegacyKey()) && !find(startBookKey());
  return true;
}

void BookFile::close() {
  file_.close();
  file_.clear();
  header_ = BookHeader();
  statedRecords_ = 0;
  records_ = 0;
  isLegacy_ = false;
  problem_.clear();
}

bool BookFile::find(std::uint64_t key) {
  if (records_ == 0) return false;
  std::uint64_t low = 0;
  std::uint64_t high = records_ - 1;
  std::uint64_t found = 0;
  while (low < high) {
    const std::uint64_t middle = low + (high - low) / 2;
    if (!readKeyOf(middle, found)) return false;
    if (found < key) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (!readKeyOf(low, found) || found != key) return false;
  seekRecord(low);
  return true;
}

int BookFile::readMoves() {
  const std::uint64_t key = records_ == 0 ? 0 : keyOfBoard();
  if (!find(key)) return 0;
  int count = 0;
  BookEntry entry;
  for (int records = 0; records < MAX_RECORDS_READ && count < MAX_MOVES_READ; ++records) {
    if (!next(entry) || entry.key != key) break;
    placeCastling(entry);
    if (count > 0 && move(count).isSameMove(entry)) {
      addGames(move(count), entry);
    } else {
      move(++count) = entry;
    }
  }
  return count;
}

std::uint64_t BookFile::keyOfBoard() const {
  if (kind() == BookKind::POLYGLOT) return polyglotKey(board_);
  return isLegacy_ ? legacyKey(board_) : bookKey(board_);
}

// Only a Polyglot book has a king take his own rook.
void BookFile::placeCastling(BookEntry& entry) const {
  const Square from(entry.from & 0x77);
  const Square to(entry.to & 0x77);
  const Color us = board_.side;
  if (kind() != BookKind::POLYGLOT || board_.kingSquare(us) != from || !board_.at(to).isOf(us)) {
    return;
  }
  entry.to = static_cast<std::uint8_t>(castlingTarget(from, to).number());
}

void BookFile::rewind() {
  seekRecord(0);
}

bool BookFile::next(BookEntry& entry) {
  if (records_ == 0 || !readRecord(entry, file_, header_.flags | BOOK_KEY)) return false;
  // A record may be longer than what is known of it.
  const int padding = header_.recordSize - recordSizeOf(header_.flags);
  if (padding > 0) file_.ignore(padding);
  return true;
}

void BookFile::seekRecord(std::uint64_t index) {
  file_.clear();
  file_.seekg(static_cast<std::streamoff>(static_cast<std::uint64_t>(header_.size) +
                                          index * static_cast<std::uint64_t>(header_.recordSize)));
}

bool BookFile::readKeyOf(std::uint64_t index, std::uint64_t& key) {
  seekRecord(index);
  return readKey(key, file_);
}

}  // namespace ombrin
