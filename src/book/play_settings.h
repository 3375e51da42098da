#pragma once

#include "util/ini_file.h"

namespace ombrin {

// How a move is picked from a book; the ini keys of the group "book.play.". Percentages are
// fractions here.
struct PlaySettings {
  int maxply = 0;    // plies since the set-up after which the book is not asked; 0: no limit
  int mingames = 2;  // a move with fewer games is rejected
  double mingamepct = 0.10;     // and one with fewer than this share of the most played one's games
  double minelo = 2700;         // and one with a lower Elo, in a book that knows Elo
  double maxelodelta = 200;     // and one with an Elo that far below the highest
  double minscorew = 0.50;      // and one with a lower score, for White
  double minscoreb = 0.40;      // and for Black
  double maxscoredelta = 0.05;  // that far below the best score, a move gets no score share
  double gameweight = 1.0;
  double eloweight = 1.0;
  double scoreweight = 0.0;
  double winweight = 0.0;  // shown, but without effect, as is the next
  double drawweight = 0.0;
  double minweight = 0.10;  // a move below this share of the largest weight is not played
  double random = 1.0;      // 0: always the move with the largest weight; 1: by weight

  // What is missing or empty in the file has the value above.
  static PlaySettings read(const IniFile& ini);
};

}  // namespace ombrin
