#pragma once

#include <string>

#include "util/ini_file.h"

namespace ombrin {

// What goes into a book that is built from games; the ini keys of the group "book.build.".
// Percentages are fractions here.
struct BuildSettings {
  std::string file;         // the book to write; empty: named after the collection
  int minelo = 2300;        // at least one player must have it; 0: no limit
  int maxelodelta = 120;    // the most that the players may differ by; 0: no limit
  int minply = 32;          // shorter games are not used
  int maxply = 50;          // plies of a game that are entered
  int mingames = 4;         // games that a move needs
  int minquality = 2700;    // Elo that a move needs
  double minscorew = 0.49;  // score that a move needs, for White
  double minscoreb = 0.39;  // and for Black
  double keeppct = 0.98;    // share of a position's games that the moves kept must cover

  // What is missing or empty in the file has the value above.
  static BuildSettings read(const IniFile& ini);
};

}  // namespace ombrin
