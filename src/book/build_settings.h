#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "util/ini_file.h"
#include "util/ini_table.h"

namespace ombrin {

// What goes into a book that is built from games; the ini keys of the group "book.build.".
// Percentages are fractions here.
struct BuildSettings {
  // What is missing or empty in the file has its default.
  explicit BuildSettings(const IniFile& ini = IniFile());

  // The keys with their defaults, in the order in which they are shown.
  static std::span<const IniRow<BuildSettings>> rows();
  // Those that are shown only when they are set: how it is built, and not what.
  static std::span<const IniRow<BuildSettings>> extraRows();

  // What the table may take, in bytes.
  std::uint64_t mostBytes() const;

  std::string file;  // the book to write; empty: named after the collection
  int minelo;        // at least one player must have it; 0: no limit
  int maxelodelta;   // the most that the players may differ by; 0: no limit
  int minply;        // shorter games are not used
  int maxply;        // plies of a game that are entered
  int mingames;      // games that a move needs
  int minquality;    // Elo that a move needs
  double minscorew;  // score that a move needs, for White
  double minscoreb;  // and for Black
  double keeppct;    // share of a position's games that the moves kept must cover
  int maxmb;         // megabytes for the table; 0: two thirds of the machine's memory
  int showboard;     // not 0: the board is shown where a move cannot be played
};

}  // namespace ombrin
