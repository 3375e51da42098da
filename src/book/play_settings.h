#pragma once

#include <span>

#include "util/ini_file.h"
#include "util/ini_table.h"

namespace ombrin {

// How a move is picked from a book; the ini keys of the group "book.play.". Percentages are
// fractions here.
struct PlaySettings {
  // What is missing or empty in the file has its default.
  explicit PlaySettings(const IniFile& ini = IniFile());

  // The keys with their defaults, in the order in which they are shown: what a move must fulfil,
  // and how those that do are weighed.
  static std::span<const IniRow<PlaySettings>> criteria();
  static std::span<const IniRow<PlaySettings>> weights();

  int maxply;            // plies since the set-up after which the book is not asked; 0: no limit
  int mingames;          // a move with fewer games is rejected
  double mingamepct;     // and one with fewer than this share of the most played one's games
  double minelo;         // and one with a lower Elo, in a book that knows Elo
  double maxelodelta;    // and one with an Elo that far below the highest
  double minscorew;      // and one with a lower score, for White
  double minscoreb;      // and for Black
  double maxscoredelta;  // that far below the best score, a move gets no score share
  double gameweight;
  double eloweight;
  double scoreweight;
  double winweight;  // shown, but without effect, as is the next
  double drawweight;
  double minweight;  // a move below this share of the largest weight is not played
  double random;     // 0: always the move with the largest weight; 1: by weight
};

}  // namespace ombrin
