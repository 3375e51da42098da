#include "book/book_merge.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "book/book_file.h"
#include "book/book_output.h"
#include "book/progress.h"
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

  // Records of the book so far.
  std::uint64_t taken() const { return taken_; }

  void advance() {
    taken_ += count_;
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
  std::uint64_t taken_ = 0;
};

// The moves of both, with their games together. The records of a split move become one, which has
// its Elo once: every one of them tells it in full.
std::vector<BookEntry> sumOf(std::span<const BookEntry> master,
                             std::span<const BookEntry> secondary) {
  std::vector<BookEntry> sum;
  const auto find = [](std::vector<BookEntry>& entries, const BookEntry& move) {
    return std::ranges::find_if(entries,
                                [&move](const BookEntry& one) { return one.isSameMove(move); });
  };
  for (const std::span<const BookEntry> records : {master, secondary}) {
    std::vector<BookEntry> moves;
    for (BookEntry record : records) {
      const auto known = find(moves, record);
      if (known == moves.end()) {
        moves.push_back(record);
      } else {
        record.eloFactor = 0;
        addGames(*known, record);
      }
    }
    for (const BookEntry& move : moves) {
      const auto known = find(sum, move);
      if (known == sum.end()) {
        sum.push_back(move);
      } else {
        addGames(*known, move);
      }
    }
  }
  std::ranges::sort(sum, isBefore);
  return sum;
}

class Merger {
 public:
  Merger(BookFile& master, BookFile& secondary, std::ostream& out, MergeRule rule)
      : master_(master),
        secondary_(secondary),
        out_(out),
        rule_(rule),
        flags_(master.header().flags),
        progress_(std::uint64_t{master.recordCount()} + secondary.recordCount(),
                  Progress::ENTRIES_PER_DOT) {}

  void run() {
    if (flags_ != BOOK_WEIGHT) writeHeader(BookHeader::withFlags(flags_), out_);
    while (!master_.atEnd() || !secondary_.atEnd()) {
      const bool masterFirst =
          secondary_.atEnd() || (!master_.atEnd() && master_.key() < secondary_.key());
      const bool secondaryFirst =
          master_.atEnd() || (!secondary_.atEnd() && secondary_.key() < master_.key());
      if (masterFirst || secondaryFirst) {
        write((secondaryFirst ? secondary_ : master_).records());
      } else if (rule_ == MergeRule::SUM) {
        write(sumOf(master_.records(), secondary_.records()));
      } else {
        write(master_.records());
      }
      if (!secondaryFirst) master_.advance();
      if (!masterFirst) secondary_.advance();
    }
    progress_.clear();
  }

  int positions() const { return positions_; }
  int moves() const { return moves_; }

 private:
  void write(std::span<const BookEntry> records) {
    constexpr int BETWEEN_REPORTS = 1 << 12;
    for (const BookEntry& entry : records) {
      writeRecord(entry, out_, flags_);
      ++moves_;
    }
    if (++positions_ % BETWEEN_REPORTS == 0) {
      progress_.at(master_.taken() + secondary_.taken());
    }
  }

  GroupReader master_;
  GroupReader secondary_;
  std::ostream& out_;
  const MergeRule rule_;
  const int flags_;
  Progress progress_;
  int positions_ = 0;
  int moves_ = 0;
};

bool reportUnopened(const std::string& name, const std::string& problem = "") {
  print(stdout, "could not open file: %s%s%s\n", name.c_str(), problem.empty() ? "" : ": ",
        problem.c_str());
  return false;
}

// True, and the reason on standard output, when they do not go together.
bool areUnlike(const BookFile& master, const BookFile& secondary, const std::string& result) {
  if (master.kind() == secondary.kind() && master.kind() == kindOfName(result)) return false;
  print(stdout, "cannot merge books of two kinds; buildbook turns one into the other\n");
  return true;
}

}  // namespace

bool mergeBooks(const std::string& master, const std::string& secondary, const std::string& result,
                MergeRule rule) {
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
  if (!masterBook.open(master)) return reportUnopened(master, masterBook.problem());
  if (masterBook.isEmpty()) return reportUnopened(master, "it has no moves");
  if (!secondaryBook.open(secondary)) return reportUnopened(secondary, secondaryBook.problem());
  if (areUnlike(masterBook, secondaryBook, result)) return false;
  BookOutput output(result);
  if (!output.isOpen()) return reportUnopened(result);

  print(stdout, "merging %s with %s to %s...\n", master.c_str(), secondary.c_str(), result.c_str());
  Merger merger(masterBook, secondaryBook, output.stream(), rule);
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
