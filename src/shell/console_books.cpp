// The console's commands for opening books.
#include <string>

#include "board/fen.h"
#include "board/notation.h"
#include "book/book_builder.h"
#include "book/book_merge.h"
#include "book/book_statistics.h"
#include "shell/console.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

namespace {

// The commands with several names read no more of each.
constexpr std::size_t LONGEST_NAME = 200;

std::string takeName(std::string_view& text) {
  return std::string(takeWord(text, LONGEST_NAME));
}

void reportNoBook() {
  print(stdout, "book not open!\n");
}

}  // namespace

void Console::showBook() {
  if (book_.isOpen()) {
    picker_.show();
  } else {
    reportNoBook();
  }
}

bool Console::showBookMove() {
  if (!book_.isOpen()) return false;
  const Move move = picker_.pick();
  if (move.isNull()) return false;
  picker_.show();
  print(stdout, "picked book move: %s\n", moveToText(move).c_str());
  return true;
}

void Console::listBook(const RefString& /*arguments*/) {
  showBook();
}

void Console::loadBook(const RefString& name) {
  if (name.empty()) return;
  book_.close();
  if (book_.open(name.c_str())) {
    print(stdout, "book found: %s, %u positions\n", name.c_str(), book_.recordCount());
    picker_.configure(settings_);
  } else {
    print(stdout, "could not read book file: %s\n", name.c_str());
  }
}

void Console::buildBook(const RefString& arguments) {
  book_.close();
  std::string_view text = arguments.view();
  const std::string pgnFile = takeName(text);
  const std::string iniFile = takeName(text);
  const int maxGames = toInt(text);
  if (pgnFile.empty()) {
    print(stdout, "Usage:\n    buildbook <pgnfile> [inifile [maxgames]]]\n");
    return;
  }
  control_.stopSearch();
  std::string bookFile;
  Board board;
  const bool built =
      ombrin::buildBook(board, bookFile, iniFile.empty() ? iniFile_ : iniFile, pgnFile, maxGames);
  // Once games have been read, the listing is that of the start position.
  if (!board.occupied().empty()) game_.setUp(START_FEN);
  if (!built) return;
  print(stdout, "opening %s...\n", bookFile.c_str());
  loadBook(RefString(bookFile));
  showBook();
}

void Console::mergeBooks(const RefString& arguments) {
  book_.close();
  std::string_view text = arguments.view();
  const std::string master = takeName(text);
  const std::string secondary = takeName(text);
  const std::string result = takeName(text);
  if (result.empty()) {
    print(stdout, "Usage:\n    mergebook <masterbook> <secondarybook> <resultbook>\n");
    return;
  }
  if (ombrin::mergeBooks(master, secondary, result) && book_.open(result)) showBook();
}

void Console::showBookStatistics(const RefString& /*arguments*/) {
  if (book_.isOpen()) {
    logBook(book_);
  } else {
    reportNoBook();
  }
}

}  // namespace ombrin
