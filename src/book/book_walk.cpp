#include "book/book_walk.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "book/book_key.h"
#include "book/filed_move.h"
#include "book/progress.h"

namespace ombrin {

namespace {

// No book is that deep; the board remembers twice as many moves.
constexpr std::size_t MOST_PLIES = 500;

class Walker {
 public:
  Walker(BookFile& book, BookTable& table, BookKind kind)
      : book_(book),
        board_(table.board()),
        table_(table),
        kind_(kind),
        progress_(book.recordCount(), Progress::ENTRIES_PER_DOT) {}

  WalkCounts run() {
    setFen(board_, START_FEN);
    enterPosition();
    while (!path_.empty() && !counts_.isFull) step();
    setFen(board_, START_FEN);
    return counts_;
  }

 private:
  // A position on the way, with the moves that are still to be followed.
  struct Station {
    std::vector<Move> moves;
    Move led;  // here, from the one before
    SavedState saved;
  };

  void step() {
    std::vector<Move>& moves = path_.back().moves;
    if (moves.empty()) {
      const Station& done = path_.back();
      if (path_.size() > 1) unmakeMove(board_, done.led, done.saved);
      path_.pop_back();
      return;
    }
    const Move move = moves.back();
    moves.pop_back();
    led_ = move;
    saved_ = board_.save();
    const Move made = makeMove(board_, move);
    board_.moveHistory[board_.ply - 1] = made;
    if (!enterPosition()) unmakeMove(board_, move, saved_);
  }

  // False when there is nothing to follow from here.
  bool enterPosition() {
    if (path_.size() >= MOST_PLIES || !seen_.insert(bookKey(board_)).second) return false;
    const int count = book_.readMoves();
    if (count == 0) return false;
    ++counts_.positions;
    Station station{{}, led_, saved_};
    for (int slot = 1; slot <= count; ++slot) {
      if (!enter(book_.move(slot), station.moves)) return false;
    }
    progress_.at(static_cast<std::uint64_t>(counts_.moves));
    path_.push_back(std::move(station));
    return true;
  }

  // False when the table is full.
  bool enter(const BookEntry& known, std::vector<Move>& moves) {
    const Move move = parseMove(board_, moveText(known));
    const bool fits =
        kind_ == BookKind::POLYGLOT || known.promotion == 0 || known.promotion == QUEEN;
    if (move.isNull() || !fits || known.isEmpty()) {
      ++counts_.unfit;
      return true;
    }
    BookEntry entry = filedMove(board_, move, kind_);
    addGames(entry, known);
    counts_.isFull = !table_.makeRoomFor(1);
    if (counts_.isFull) return false;
    table_.add(entry);
    ++counts_.moves;
    moves.push_back(move);
    return true;
  }

  BookFile& book_;
  Board& board_;
  BookTable& table_;
  const BookKind kind_;
  Progress progress_;
  std::unordered_set<std::uint64_t> seen_;
  std::vector<Station> path_;
  // Of the move that was made last.
  Move led_;
  SavedState saved_{};
  WalkCounts counts_;
};

}  // namespace

WalkCounts walkBook(BookFile& book, BookTable& table, BookKind kind) {
  return Walker(book, table, kind).run();
}

}  // namespace ombrin
