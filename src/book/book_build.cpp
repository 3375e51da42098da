#include "book/book_build.h"

#include <algorithm>
#include <string>

#include "board/display.h"
#include "board/fen.h"
#include "book/book_file.h"
#include "book/book_format.h"
#include "book/book_walk.h"
#include "book/build_advice.h"
#include "book/polyglot_weights.h"
#include "book/table_filter.h"
#include "book/table_output.h"
#include "pgn/file_source.h"
#include "pgn/pgn_reader.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr std::uint64_t GAMES_PER_DOT = 1000;

void printCount(const char* label, std::int64_t count) {
  print(stdout, "%s=%8lli\n", label, static_cast<long long>(count));
}

// With its share of a whole, in percent.
void printShare(const char* label, std::int64_t count, std::int64_t share, std::int64_t whole) {
  print(stdout, "%s=%8lli  (%3lli%%)\n", label, static_cast<long long>(count),
        static_cast<long long>(100 * share / whole));
}

// What was taken away.
void printLoss(const char* label, std::int64_t count, std::int64_t whole) {
  printShare(label, count, -count, whole);
}

}  // namespace

BookBuild::BookBuild(Board& board, BookKind kind, const BuildSettings& settings,
                     const PlaySettings& play)
    : kind_(kind), settings_(settings), play_(play), table_(board) {
  table_.limitBytes(settings.mostBytes());
}

bool BookBuild::readGames(const BuildSources& sources, std::int64_t maxGames) {
  GameCollector collector(table_, kind_, settings_, counters_);
  Progress progress(maxGames > 0 ? 0 : sources.bytes(), GAMES_PER_DOT);
  for (const BuildSource& file : sources.files) {
    std::string problem;
    const std::unique_ptr<ByteSource> source = openSource(file.name, problem);
    bool goesOn = true;
    if (source) {
      LineReader lines(*source);
      goesOn = readCollection(lines, collector, progress, maxGames);
      problem = lines.problem();
      bytesBefore_ += file.bytes;
    } else if (problem.empty()) {
      problem = "the file cannot be opened";
    }
    progress.clear();
    if (!problem.empty()) print(stdout, "-->%s: %s\n", file.name.c_str(), problem.c_str());
    if (!goesOn) break;
  }
  errors_.finish();
  reportRoom();
  setFen(table_.board(), START_FEN);
  moves_ = static_cast<std::int64_t>(table_.used());
  if (games_ == 0) print(stdout, "-->no games!\n");
  return games_ > 0;
}

// False when no more games are wanted, or none can be held.
bool BookBuild::readCollection(LineReader& lines, GameCollector& collector, Progress& progress,
                               std::int64_t maxGames) {
  PgnReader reader(lines);
  const auto mostMoves = static_cast<std::size_t>(settings_.maxply);
  while (maxGames <= 0 || games_ < maxGames) {
    const PgnGame* game = reader.readGame();
    if (game == nullptr) return true;
    progress.at(bytesBefore_ + lines.consumed(), static_cast<std::uint64_t>(games_));
    // The table tells when it grows.
    if (!table_.hasRoomFor(mostMoves)) progress.clear();
    if (!collector.addGame(*game)) {
      progress.clear();
      errors_.add(*game, collector.problem(), reader.lineCount(), games_);
      const bool onBoard = collector.problem().kind == GameProblem::ILLEGAL_MOVE;
      if (settings_.showboard != 0 && onBoard) printBoard(table_.board(), stdout);
    }
    if (collector.isFull()) {
      progress.clear();
      print(stdout, "ABORT: resize() failed, #entries=%zu\n", table_.loadLimit());
      return false;
    }
    ++games_;
  }
  return false;
}

void BookBuild::reportRoom() const {
  if (table_.dropped() == 0) return;
  print(stdout, "-->%lli rare moves were let go to stay within %llu MiB, see book.build.maxmb\n",
        static_cast<long long>(table_.dropped()),
        static_cast<unsigned long long>(settings_.mostBytes() >> 20));
}

bool BookBuild::reportGames() const {
  print(stdout, "\n");
  printCount("games.read  ", games_);
  printLoss("   -error   ", counters_.errors, games_);
  if (counters_.otherVariants > 0) printLoss("   -variant ", counters_.otherVariants, games_);
  printLoss("   -minply  ", counters_.belowMinply, games_);
  printLoss("   -minelo  ", counters_.belowMinelo, games_);
  printLoss("   -maxelo  ", counters_.aboveMaxelodelta, games_);
  printLoss("   -noresult", counters_.withoutResult, games_);
  printShare("games.used  ", counters_.used, counters_.used, games_);
  if (counters_.used > 0 && moves_ > 0) return true;
  adviseOnGames(counters_, settings_, games_);
  print(stdout, moves_ == 0 ? "-->no moves!\n" : "-->no games left!\n");
  return false;
}

bool BookBuild::readBooks(const BuildSources& sources) {
  for (const BuildSource& file : sources.files) {
    BookFile book(table_.board());
    if (!book.open(file.name)) {
      print(stdout, "could not read book file: %s: %s\n", file.name.c_str(),
            book.problem().c_str());
      return false;
    }
    known_.elo = known_.elo && book.hasElo();
    known_.score = known_.score && book.hasScore();
    const WalkCounts walked = walkBook(book, table_, kind_);
    print(stdout, "%s: %lli positions and %lli moves can be reached from the start position",
          file.name.c_str(), static_cast<long long>(walked.positions),
          static_cast<long long>(walked.moves));
    if (walked.unfit > 0) {
      print(stdout, ", %lli are no moves or do not fit", static_cast<long long>(walked.unfit));
    }
    print(stdout, "\n");
    if (walked.isFull) {
      print(stdout, "ABORT: resize() failed, #entries=%zu\n", table_.loadLimit());
      break;
    }
  }
  reportRoom();
  moves_ = static_cast<std::int64_t>(table_.used());
  if (moves_ == 0) print(stdout, "-->no moves!\n");
  return moves_ > 0;
}

void BookBuild::filter() {
  print(stdout, "\n");
  printCount("moves      ", counters_.movesEntered);
  printCount("moves-uniq ", moves_);
  print(stdout, "filtering...\n");
  {
    Progress progress(table_.used(), Progress::ENTRIES_PER_DOT);
    filterMoves(table_, settings_, counters_, progress);
  }
  const std::int64_t before = moves_;
  print(stdout, "filtered, slots=%lli\n", static_cast<long long>(moves_));
  printLoss(" -mingames  ", counters_.droppedByGames, moves_);
  printLoss(" -minmoveelo", counters_.droppedByQuality, moves_);
  printLoss(" -minscore  ", counters_.droppedByScore, moves_);
  moves_ -= counters_.droppedByGames + counters_.droppedByQuality + counters_.droppedByScore;
  printCount("moves      ", moves_);
  if (moves_ == 0) adviseOnMoves(counters_, before);
}

void BookBuild::sort() {
  print(stdout, "sorting...\n");
  {
    Progress progress(static_cast<std::uint64_t>(moves_), Progress::ENTRIES_PER_DOT);
    table_.sort(progress);
  }
  positions_ = countPositions(table_);
  printCount("positions  ", positions_);
  printMovesPerPosition();
  printCount("moves      ", moves_);
}

void BookBuild::thin() {
  print(stdout, "filtering...\n");
  {
    Progress progress(table_.used(), Progress::NO_DOTS);
    thinPositions(table_, settings_, counters_, progress);
  }
  const std::int64_t dropped = counters_.droppedByKeeppct;
  print(stdout, "     -keep =%8lli  (%3.1f%%)\n", static_cast<long long>(dropped),
        moves_ == 0 ? 0.0 : static_cast<double>(-100 * dropped) / static_cast<double>(moves_));
  moves_ -= dropped;
  printCount("moves      ", moves_);
  printMovesPerPosition();
}

void BookBuild::printMovesPerPosition() const {
  print(stdout, "moves/pos  =%8.2f\n",
        positions_ == 0 ? 0.0 : static_cast<double>(moves_) / static_cast<double>(positions_));
}

bool BookBuild::save(BookOutput& output) {
  print(stdout, "\n\n");
  if (kind_ == BookKind::OBK) {
    return saveTable(table_, output, known_.elo ? BOOK_COUNTS | BOOK_ELO : +BOOK_COUNTS);
  }
  {
    Progress progress(table_.used(), Progress::NO_DOTS);
    weighPositions(table_, play_, known_, progress);
  }
  if (std::ranges::all_of(table_.entries(), &BookEntry::isEmpty)) {
    print(stdout, "-->no move passes the limits of book.play!\n");
    return false;
  }
  return saveTable(table_, output, BOOK_WEIGHT);
}

}  // namespace ombrin
