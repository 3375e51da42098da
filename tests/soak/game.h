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
  std::string record;  // start position and moves
};

// Plays one game from a random opening, by the rules.
GameResult playGame(Player& white, Player& black, const GameClock& clock, std::mt19937& random);

}  // namespace ombrin
