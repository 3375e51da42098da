#include "book/book_merge.h"

#include <array>
#include <span>

#include "book/book_file.h"
#include "book/book_output.h"
#include "util/print.h"

namespace ombrin {

namespace {

// A book taken position by position, in file order. Records are left as they are: the parts of a
// split one stay apart.
class GroupReader {
 public:
  // Of a position with more records, only the first of them are taken.
  static constexpr int MAX_RECORDS = 31;

  explicit GroupReader(BookFile& book) : book_(book) {
    book_.rewind();
    hasPending_ = book_.next(pending_);
    advance();
  }

  // Nothing at the end of the book.
  bool atEnd() const { return count_ == 0; }
  std::uint64_t key() const { return slots_[0].key; }
  std::span<const BookEntry> records() const { return std::span(slots_).first(count_); }

  void advance() {
    count_ = 0;
    while (hasPending_ && (count_ == 0 || pending_.key == key())) {
      if (count_ < MAX_RECORDS) slots_[count_++] = pending_;
      hasPending_ = book_.next(pending_);
    }
  }

 private:
  BookFile& book_;
  BookEntry pending_;  // the first record that has not been taken
  bool hasPending_ = false;
  std::array<BookEntry, MAX_RECORDS> slots_;
  std::size_t count_ = 0;
};

class Merger {
 public:
  Merger(BookFile& master, BookFile& secondary, std::ostream& out)
      : master_(master), secondary_(secondary), out_(out), flags_(master.header().flags) {}

  void run() {
    writeHeader(BookHeader::withFlags(flags_), out_);
    while (!master_.atEnd() || !secondary_.atEnd()) {
      const bool masterFirst =
          secondary_.atEnd() || (!master_.atEnd() && master_.key() < secondary_.key());
      const bool secondaryFirst =
          master_.atEnd() || (!secondary_.atEnd() && secondary_.key() < master_.key());
      if (!masterFirst && !secondaryFirst) secondary_.advance();
      take(secondaryFirst ? secondary_ : master_);
    }
  }

  int positions() const { return positions_; }
  int moves() const { return moves_; }

 private:
  void take(GroupReader& book) {
    for (const BookEntry& entry : book.records()) {
      writeRecord(entry, out_, flags_);
      ++moves_;
    }
    ++positions_;
    book.advance();
  }

  GroupReader master_;
  GroupReader secondary_;
  std::ostream& out_;
  int flags_;
  int positions_ = 0;
  int moves_ = 0;
};

bool reportUnopened(const std::string& name) {
  print(stdout, "could not open file: %s\n", name.c_str());
  return false;
}

}  // namespace

bool mergeBooks(const std::string& master, const std::string& secondary,
                const std::string& result) {
  if (master.empty() || secondary.empty() || result.empty()) return false;
  if (result == master || result == secondary || isSameFile(result, master) ||
      isSameFile(result, secondary)) {
    print(stdout, "cannot merge book to self\n");
    return false;
  }
  // No position is looked up, so any board does.
  Board board;
  BookFile masterBook(board);
  BookFile secondaryBook(board);
  if (!masterBook.open(master)) return reportUnopened(master);
  if (!secondaryBook.open(secondary)) return reportUnopened(secondary);
  BookOutput output(result);
  if (!output.isOpen()) return reportUnopened(result);

  print(stdout, "merging %s with %s to %s...\n", master.c_str(), secondary.c_str(), result.c_str());
  Merger merger(masterBook, secondaryBook, output.stream());
  merger.run();
  if (!output.commit()) {
    print(stdout, "could not write file: %s\n", result.c_str());
    return false;
  }
  print(stdout, "...done!\n%s contains %i positions with %i moves\n", result.c_str(),
        merger.positions(), merger.moves());
  return true;
}

}  // namespace ombrin
