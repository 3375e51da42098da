#pragma once

#include <string>
#include <vector>

#include "board/board.h"

namespace ombrin {

// What a book is to be built from, and how.
struct BuildRequest {
  // Game collections, compressed or not, directories with such, or "-" for standard input; or else
  // books of either kind.
  std::vector<std::string> sources;
  std::string iniFile;
  // Without the ini file, are the defaults meant?
  bool mayLackIniFile = false;
  // Empty: the ini file's, or else named after the first source, in the working directory. Polyglot
  // when it ends in ".bin".
  std::string bookFile;
  int maxGames = 0;  // below 1: all
};

// Builds a book by the settings of an ini file and saves it, with progress and statistics on
// standard output. The request's book file becomes the one that was meant. The board replays the
// games; once reading has begun it is left at the start position. True when the book has been
// written.
bool buildBook(Board& board, BuildRequest& request);

}  // namespace ombrin
