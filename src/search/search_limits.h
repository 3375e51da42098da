#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace ombrin {

// The time of a game as its clock shows it. Milliseconds.
struct GameTime {
  int movesToGo = 0;  // until the next time control; below 1: the time is for the rest of the game
  int remaining = 0;
  int increment = 0;
  int reserve = 0;  // of the remaining time, what is not planned with
};

// What a search gets that nobody has told how long it may take, in milliseconds.
inline constexpr int DEFAULT_MOVE_TIME = 5000;

// What is kept in reserve of a remaining time, in milliseconds, when nobody says how much: three
// seconds, but never so much that a fast game could not be played.
constexpr int defaultReserve(int remaining) {
  return std::clamp(remaining / 20, 0, 3000);
}

// How long and how deep a search may go. A limit that is absent does not limit.
struct SearchLimits {
  std::optional<int> depth = std::nullopt;  // plies, from 1
  std::optional<std::uint64_t> nodes = std::nullopt;
  std::optional<int> moveTime = std::nullopt;   // milliseconds for this move, whatever happens
  std::optional<GameTime> game = std::nullopt;  // only asked when there is no move time

  // Only a stop, the depth or the nodes end the search, until a ponderhit makes the time count.
  bool infinite = false;

  // What makes a game's time be shared out differently.
  bool canPonder = false;  // the engine thinks on the opponent's time as well
  int movesOutOfBook =
      0;  // own moves since the game left the book, this one included; 0: not known
};

}  // namespace ombrin
