// The console's commands for opening books.
#include <cstdio>

#include "board/notation.h"
#include "book/book_builder.h"
#include "book/book_merge.h"
#include "book/book_statistics.h"
#include "shell/console.h"
#include "util/print.h"

namespace ombrin {

namespace {

// Room for a file name of 200 characters, as much as the commands with several names read.
using FileName = char[201];

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
  FileName pgnFile = "";
  FileName iniFile = "";
  int maxGames = 0;
  const int fields = std::sscanf(arguments.c_str(), "%200s %200s %d", pgnFile, iniFile, &maxGames);
  if (fields < 1) {
    print(stdout, "Usage:\n    buildbook <pgnfile> [inifile [maxgames]]]\n");
    return;
  }
  control_.stopSearch();
  std::string bookFile;
  const bool built = ombrin::buildBook(control_.board(), bookFile, fields > 1 ? iniFile : iniFile_,
                                       pgnFile, maxGames);
  control_.settleGame();
  if (!built) return;
  print(stdout, "opening %s...\n", bookFile.c_str());
  loadBook(RefString(bookFile));
  showBook();
}

void Console::mergeBooks(const RefString& arguments) {
  book_.close();
  FileName master;
  FileName secondary;
  FileName result;
  if (std::sscanf(arguments.c_str(), "%200s %200s %200s", master, secondary, result) != 3) {
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
