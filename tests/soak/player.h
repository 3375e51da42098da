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
  std::string iniFile;  // none when empty
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

// A player's answer: a move as text, how long it took, and for how much of that the player was kept
// from running by other programs.
struct Reply {
  std::string move;
  std::string ponderMove;  // empty when none was named
  long elapsedMs = 0;
  long starvedMs = 0;
};

class Player {
 public:
  explicit Player(const PlayerSettings& settings)
      : settings_(settings), process_(commandOf(settings)) {}
  virtual ~Player() = default;

  virtual void newGame(const std::string& fen, Color color, const GameClock& clock) = 0;
  // The move to make after `moves` (in coordinates); nothing when none comes for a minute more
  // than the player may take.
  virtual std::optional<Reply> think(const std::vector<std::string>& moves,
                                     const ClockTimes& times) = 0;
  virtual void endGame() = 0;

  const PlayerSettings& settings() const { return settings_; }
  bool isBroken() const { return broken_; }
  // The program has ended though nobody asked it to.
  bool hasDied() { return process_.waitForExit(ChildProcess::Milliseconds(0)).has_value(); }
  long residentKb() const { return process_.residentKb(); }

 private:
  static std::vector<std::string> commandOf(const PlayerSettings& settings) {
    if (settings.iniFile.empty()) return {settings.program};
    return {settings.program, settings.iniFile};
  }

 protected:
  static constexpr int PATIENCE_MS = 60000;

  PlayerSettings settings_;
  ChildProcess process_;
  bool broken_ = false;
};

std::unique_ptr<Player> makeUciPlayer(const PlayerSettings& settings);
std::unique_ptr<Player> makeXboardPlayer(const PlayerSettings& settings);

}  // namespace ombrin
