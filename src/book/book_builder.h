#pragma once

#include <string>

#include "board/board.h"

namespace ombrin {

// Builds a book from a game collection by the settings of an ini file and saves it, with progress
// and statistics on standard output. An empty `bookFileName` is replaced by the ini file's, or else
// by the collection's name with the ending ".obk", in the working directory. `maxGames` below 1
// means all games. The board replays the games; once reading has begun it is left at the start
// position. True when the book has been written.
bool buildBook(Board& board, std::string& bookFileName, const std::string& iniFileName,
               const std::string& pgnFileName, int maxGames);

}  // namespace ombrin
