// An engine under either protocol, as a player of timed games.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "board/board.h"
#include "support/child_process.h"

namespace ombrin {

struct PlayerSettings {
  std::string program;
  int threads = 1;
  int hashMb = 16;
  bool ponder = false;
};

// How much time the players have: so much for every move, or a clock with an increment.
struct GameClock {
  int moveTimeMs = 0;
  int baseMs = 1000;
  int incrementMs = 10;
};

struct ClockTimes {
  int ownMs = 0;
  int otherMs = 0;
};

// A player's answer: a move as text, and how long it took.
struct Reply {
  std::string move;
  long elapsedMs = 0;
};

class Player {
 public:
  explicit Player(const PlayerSettings& settings)
      : settings_(settings), process_({settings.program}) {}
  virtual ~Player() = default;

  virtual void newGame(const std::string& fen, Color color, const GameClock& clock) = 0;
  // The move to make after `moves` (in coordinates); nothing when none comes for five seconds more
  // than the player may take.
  virtual std::optional<Reply> think(const std::vector<std::string>& moves,
                                     const ClockTimes& times) = 0;
  virtual void endGame() = 0;

  bool isBroken() const { return broken_; }
  // The program has ended though nobody asked it to.
  bool hasDied() { return process_.waitForExit(ChildProcess::Milliseconds(0)).has_value(); }
  long residentKb() const { return process_.residentKb(); }

 protected:
  static constexpr int PATIENCE_MS = 5000;

  PlayerSettings settings_;
  ChildProcess process_;
  bool broken_ = false;
};

std::unique_ptr<Player> makeUciPlayer(const PlayerSettings& settings);
std::unique_ptr<Player> makeXboardPlayer(const PlayerSettings& settings);

}  // namespace ombrin
