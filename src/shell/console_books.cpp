// The console's commands for opening books.

#include "board/fen.h"
#include "board/notation.h"
#include "book/book_builder.h"
#include "book/book_merge.h"
#include "book/book_statistics.h"
#include "shell/book_arguments.h"
#include "shell/console.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

namespace {

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
  std::string path(name.view());
  if (path.starts_with('"')) path = splitWords(path).front();
  if (book_.open(path)) {
    print(stdout, "book found: %s, %u positions\n", path.c_str(), book_.recordCount());
    picker_.configure(settings_);
  } else {
    const std::string problem = book_.problem().empty() ? "" : ": " + book_.problem();
    print(stdout, "could not read book file: %s%s\n", path.c_str(), problem.c_str());
  }
}

void Console::buildBook(const RefString& arguments) {
  book_.close();
  BuildRequest request = readBuildRequest(arguments.view(), iniFile_);
  if (request.sources.empty()) {
    print(stdout, "Usage:\n    buildbook <pgnfile> [inifile [maxgames]]]\n");
    return;
  }
  control_.stopSearch();
  Board board;
  const bool built = ombrin::buildBook(board, request);
  // Once games have been read, the listing is that of the start position.
  if (!board.occupied().empty()) game_.setUp(START_FEN);
  if (!built) return;
  print(stdout, "opening %s...\n", request.bookFile.c_str());
  loadBook(RefString(request.bookFile));
  showBook();
}

void Console::mergeBooks(const RefString& arguments) {
  book_.close();
  const std::vector<std::string> words = splitWords(arguments.view());
  const bool sums = words.size() == 4 && words[3] == "sum";
  if (words.size() != 3 && !sums) {
    print(stdout, "Usage:\n    mergebook <masterbook> <secondarybook> <resultbook>\n");
    return;
  }
  const MergeRule rule = sums ? MergeRule::SUM : MergeRule::MASTER_WINS;
  if (ombrin::mergeBooks(words[0], words[1], words[2], rule) && book_.open(words[2])) showBook();
}

void Console::showBookStatistics(const RefString& /*arguments*/) {
  if (book_.isOpen()) {
    logBook(book_);
  } else {
    reportNoBook();
  }
}

}  // namespace ombrin
