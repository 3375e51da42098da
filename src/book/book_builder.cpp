#include "book/book_builder.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "board/fen.h"
#include "book/book_output.h"
#include "book/book_table.h"
#include "book/build_advice.h"
#include "book/build_settings.h"
#include "book/error_report.h"
#include "book/game_collector.h"
#include "book/table_filter.h"
#include "pgn/pgn_reader.h"
#include "util/file_system.h"
#include "util/ini_file.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr const char* RULE = "---------------------";
constexpr std::int64_t GAMES_PER_DOT = 1000;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Null when there is no such file.
Stream openForReading(const std::string& path) {
  std::error_code ignored;
  const bool isDirectory = std::filesystem::is_directory(pathOf(path), ignored);
  return {isDirectory ? nullptr : std::fopen(path.c_str(), "rb"), &std::fclose};
}

// The collection's name without directories and extension, with a book's.
std::string bookNameFor(std::string_view pgnFileName) {
  const std::string_view name = lastPart(pgnFileName);
  return std::string(name.substr(0, name.rfind('.'))) + ".obk";
}

void printSettings(const BuildSettings& settings, const std::string& pgnFileName,
                   const std::string& iniFileName, const std::string& bookFileName) {
  print(stdout, "Book configuration\n%s\n", RULE);
  print(stdout, "pgnfile    = %s\n", pgnFileName.c_str());
  print(stdout, "inifile    = %s\n", iniFileName.c_str());
  print(stdout, "bookfile   = %s\n", bookFileName.c_str());
  for (const IniRow<BuildSettings>& row : BuildSettings::rows()) {
    if (const std::optional<double> number = row.number(settings)) {
      print(stdout, "%-11s= %4.0f\n", row.name().c_str(), *number);
    }
  }
  print(stdout, "%s\n", RULE);
}

// One run of the builder: its table, its counts and its report.
class Build {
 public:
  Build(Board& board, const BuildSettings& settings) : settings_(settings), table_(board) {}

  // Each step reports on standard output and says whether there is anything left to do.
  bool readGames(std::FILE* pgnFile, int maxGames);
  bool reportGames() const;
  void filter();
  void sortAndThin();

  bool save(BookOutput& output) const {
    print(stdout, "\n\n");
    return table_.save(output);
  }

 private:
  void printCount(const char* label, std::int64_t count) const {
    print(stdout, "%s=%8lli\n", label, static_cast<long long>(count));
  }
  // With its share of a whole, in percent.
  void printShare(const char* label, std::int64_t count, std::int64_t share,
                  std::int64_t whole) const {
    print(stdout, "%s=%8lli  (%3lli%%)\n", label, static_cast<long long>(count),
          static_cast<long long>(100 * share / whole));
  }
  // What was taken away.
  void printLoss(const char* label, std::int64_t count, std::int64_t whole) const {
    printShare(label, count, -count, whole);
  }
  void printMovesPerPosition(std::int64_t positions) const {
    print(stdout, "moves/pos  =%8.2f\n",
          positions == 0 ? 0.0 : static_cast<double>(moves_) / static_cast<double>(positions));
  }

  const BuildSettings& settings_;
  BuildCounters counters_;
  BookTable table_;
  std::int64_t games_ = 0;
  std::int64_t moves_ = 0;  // that are left
};

bool Build::readGames(std::FILE* pgnFile, int maxGames) {
  StreamSource source(pgnFile);
  LineReader lines(source);
  PgnReader reader(lines);
  ErrorReport errors;
  GameCollector collector(table_, settings_, counters_);
  while (maxGames <= 0 || games_ < maxGames) {
    const PgnGame* game = reader.readGame();
    if (game == nullptr) break;
    if (table_.loadLimit() <= table_.used() && !table_.grow()) {
      print(stdout, "ABORT: resize() failed, #entries=%zu\n", table_.loadLimit());
      break;
    }
    if (games_ > 0 && games_ % GAMES_PER_DOT == 0) {
      print(stdout, ".");
      std::fflush(stdout);
    }
    if (!collector.addGame(*game)) {
      errors.add(*game, collector.problem(), reader.lineCount(), games_);
    }
    ++games_;
  }
  errors.finish();
  if (!lines.problem().empty()) print(stdout, "-->%s\n", lines.problem().c_str());
  setFen(table_.board(), START_FEN);
  moves_ = static_cast<std::int64_t>(table_.used());
  if (games_ == 0) print(stdout, "-->no games!\n");
  return games_ > 0;
}

bool Build::reportGames() const {
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

void Build::filter() {
  print(stdout, "\n");
  printCount("moves      ", counters_.movesEntered);
  printCount("moves-uniq ", moves_);
  print(stdout, "filtering...\n");
  filterMoves(table_, settings_, counters_);
  const std::int64_t before = moves_;
  print(stdout, "filtered, slots=%lli\n", static_cast<long long>(moves_));
  printLoss(" -mingames  ", counters_.droppedByGames, moves_);
  printLoss(" -minmoveelo", counters_.droppedByQuality, moves_);
  printLoss(" -minscore  ", counters_.droppedByScore, moves_);
  moves_ -= counters_.droppedByGames + counters_.droppedByQuality + counters_.droppedByScore;
  printCount("moves      ", moves_);
  if (moves_ == 0) adviseOnMoves(counters_, before);
}

void Build::sortAndThin() {
  print(stdout, "sorting...\n");
  table_.sort();
  const std::int64_t positions = countPositions(table_);
  printCount("positions  ", positions);
  printMovesPerPosition(positions);
  printCount("moves      ", moves_);
  print(stdout, "filtering...\n");
  thinPositions(table_, settings_, counters_);
  const std::int64_t dropped = counters_.droppedByKeeppct;
  print(stdout, "     -keep =%8lli  (%3.1f%%)\n", static_cast<long long>(dropped),
        moves_ == 0 ? 0.0 : static_cast<double>(-100 * dropped) / static_cast<double>(moves_));
  moves_ -= dropped;
  printCount("moves      ", moves_);
  printMovesPerPosition(positions);
}

}  // namespace

bool buildBook(Board& board, std::string& bookFileName, const std::string& iniFileName,
               const std::string& pgnFileName, int maxGames) {
  if (pgnFileName.empty()) {
    print(stdout, "no pgnfile!\n");
    return false;
  }
  IniFile ini;
  if (!ini.load(iniFileName)) {
    print(stdout, "could not load inifile: %s\n", iniFileName.c_str());
    return false;
  }
  const BuildSettings settings(ini);
  if (bookFileName.empty()) bookFileName = settings.file;
  if (bookFileName.empty()) bookFileName = bookNameFor(pgnFileName);
  const Stream pgnFile = openForReading(pgnFileName);
  if (!pgnFile) {
    print(stdout, "could not open pgn-file: %s\n", pgnFileName.c_str());
    return false;
  }
  if (isSameFile(pgnFileName, bookFileName)) {
    print(stdout, "the book would replace its source: %s\n", pgnFileName.c_str());
    return false;
  }
  // A book that cannot be written is not worth the reading.
  BookOutput output(bookFileName);
  if (!output.isOpen()) {
    print(stdout, "could not open file: %s\n", bookFileName.c_str());
    return false;
  }
  printSettings(settings, pgnFileName, iniFileName, bookFileName);
  if (settings.maxply <= 0) {
    print(stdout, "-->nothing to do: maxply=%i\n", settings.maxply);
    return false;
  }

  print(stdout, "\nprocessing...\n");
  Build build(board, settings);
  if (!build.readGames(pgnFile.get(), maxGames) || !build.reportGames()) return false;
  build.filter();
  build.sortAndThin();
  return build.save(output);
}

}  // namespace ombrin
