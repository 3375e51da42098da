// How much the moves of a position are worth to whoever picks one.
#pragma once

#include <cstdint>
#include <span>

#include "board/color.h"
#include "book/book_entry.h"
#include "book/play_settings.h"

namespace ombrin {

// Why a book move is not played, as bits.
enum RejectFlag : std::uint32_t {
  TOO_FEW_GAMES = 1,
  LOW_ELO = 2,
  LOW_SCORE = 4,
  SMALL_GAME_SHARE = 8,
  ELO_FAR_BELOW_BEST = 16,
};

// What weighing found out about one move of the position.
struct PickRecord {
  std::uint32_t rejected = 0;  // RejectFlags
  double probability = 0;      // of being picked
  double weight = 0;           // what it is picked by, before chance is limited; the sum is 1
  double gameShare = 0;
  double score = 0;  // 0 to 1
  double scoreShare = 0;
  double elo = 0;
  double eloShare = 0;
  double combined = 0;  // weight before the minimum weight cuts in
};

// What the entries of a book tell beside the number of games. What they do not tell, no limit asks
// for, and it has no weight.
struct KnownOfMoves {
  bool elo = true;
  bool score = true;
};

// Rejects the moves that fail the settings and weighs the others by games, Elo and score. There is
// at least one move, all of one position in which `side` is to move; `records` has as many
// elements, and they are new.
void weighMoves(std::span<const BookEntry> moves, std::span<PickRecord> records, Color side,
                const PlaySettings& settings, KnownOfMoves known);

}  // namespace ombrin
