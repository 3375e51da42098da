#pragma once

#include <random>
#include <string>

#include "soak/player.h"

namespace ombrin {

struct GameResult {
  int score = 0;  // for White: 1, 0, -1
  std::string reason;
  bool isFault = false;  // a player did what no player may do
  int plies = 0;
  int lateMoves = 0;      // beyond a fixed time per move, because there was no processor to run on
  long longestLagMs = 0;  // beyond the time allowed, by any move
  std::string record;     // start position and moves
};

// Plays one game from a random opening, by the rules.
GameResult playGame(Player& white, Player& black, const GameClock& clock, std::mt19937& random);

}  // namespace ombrin
