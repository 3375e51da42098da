#include "soak/player.h"

#include <unistd.h>

#include <chrono>
#include <sstream>

namespace ombrin {

namespace {

using Milliseconds = ChildProcess::Milliseconds;

class Stopwatch {
 public:
  long elapsedMs() const {
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - start_)
        .count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

std::string number(long value) {
  return std::to_string(value);
}

// What a move has cost since the object was made. The referee may have to wait for a processor too.
class Account {
 public:
  explicit Account(const ChildProcess& process) : process_(process) {}
  void settle(Reply& reply) const {
    reply.elapsedMs = watch_.elapsedMs();
    reply.starvedMs = starvedMs() - starvedMs_;
  }

 private:
  long starvedMs() const {
    return ChildProcess::starvedMs(process_.pid()) + ChildProcess::starvedMs(getpid());
  }

  const ChildProcess& process_;
  long starvedMs_ = starvedMs();
  Stopwatch watch_;
};

class UciPlayer : public Player {
 public:
  explicit UciPlayer(const PlayerSettings& settings) : Player(settings) {
    process_.send("uci");
    broken_ = !process_.waitFor("uciok", Milliseconds(PATIENCE_MS));
    process_.send("setoption name Hash value " + number(settings.hashMb));
    process_.send("setoption name Threads value " + number(settings.threads));
    process_.send(std::string("setoption name Ponder value ") +
                  (settings.ponder ? "true" : "false"));
  }

  void newGame(const std::string& fen, Color color, const GameClock& clock) override {
    position_ = "position fen " + fen + " moves";
    color_ = color;
    clock_ = clock;
    ponderMove_.clear();
    process_.send("ucinewgame");
    process_.send("isready");
    if (!process_.waitFor("readyok", Milliseconds(PATIENCE_MS))) broken_ = true;
  }

  std::optional<Reply> think(const std::vector<std::string>& moves,
                             const ClockTimes& times) override {
    const Account account(process_);
    const bool hit = !ponderMove_.empty() && !moves.empty() && moves.back() == ponderMove_;
    if (hit) {
      process_.send("ponderhit");
    } else {
      endGame();  // a ponder search that missed
      process_.send(positionWith(moves));
      process_.send("go" + limits(times));
    }
    ponderMove_.clear();
    const int allowed = clock_.moveTimeMs > 0 ? clock_.moveTimeMs : times.ownMs;
    const std::optional<std::string> line =
        process_.waitFor("bestmove ", Milliseconds(allowed + PATIENCE_MS));
    if (!line) {
      broken_ = true;
      return std::nullopt;
    }
    std::istringstream words(*line);
    std::string word;
    Reply reply;
    words >> word >> reply.move >> word >> reply.ponderMove;
    account.settle(reply);
    ponderMove_ = reply.ponderMove;
    if (ponderMove_.size() == 5) ponderMove_[4] = static_cast<char>(std::tolower(ponderMove_[4]));
    if (settings_.ponder && !ponderMove_.empty()) {
      std::vector<std::string> expected = moves;
      expected.push_back(reply.move);
      expected.push_back(ponderMove_);
      process_.send(positionWith(expected));
      process_.send("go ponder" + limits(times));
    } else {
      ponderMove_.clear();
    }
    return reply;
  }

  void endGame() override {
    if (ponderMove_.empty()) return;
    process_.send("stop");
    if (!process_.waitFor("bestmove ", Milliseconds(PATIENCE_MS))) broken_ = true;
    ponderMove_.clear();
  }

 private:
  std::string positionWith(const std::vector<std::string>& moves) const {
    std::string text = position_;
    for (const std::string& move : moves) text += " " + move;
    return text;
  }
  std::string limits(const ClockTimes& times) const {
    if (clock_.moveTimeMs > 0) return " movetime " + number(clock_.moveTimeMs);
    const int white = color_ == WHITE ? times.ownMs : times.otherMs;
    const int black = color_ == WHITE ? times.otherMs : times.ownMs;
    return " wtime " + number(white) + " btime " + number(black) + " winc " +
           number(clock_.incrementMs) + " binc " + number(clock_.incrementMs);
  }

  std::string position_;
  std::string ponderMove_;
  Color color_ = WHITE;
  GameClock clock_;
};

class XboardPlayer : public Player {
 public:
  explicit XboardPlayer(const PlayerSettings& settings) : Player(settings) {
    process_.send("xboard");
    process_.send("protover 2");
    broken_ = !process_.waitFor("feature done=1", Milliseconds(PATIENCE_MS));
    process_.send("memory " + number(settings.hashMb));
    process_.send("smp " + number(settings.threads));
    process_.send(settings.ponder ? "hard" : "easy");
  }

  void newGame(const std::string& fen, Color, const GameClock& clock) override {
    clock_ = clock;
    seen_ = 0;
    process_.send("new");
    process_.send("force");
    process_.send("setboard " + fen);
    process_.send("level 0 0:" + number((clock.baseMs + 999) / 1000) + " " +
                  number(clock.incrementMs / 1000));
    process_.send("ping 1");
    if (!process_.waitFor("pong 1", Milliseconds(PATIENCE_MS))) broken_ = true;
  }

  std::optional<Reply> think(const std::vector<std::string>& moves,
                             const ClockTimes& times) override {
    const Account account(process_);
    const int own = clock_.moveTimeMs > 0 ? clock_.moveTimeMs * 20 : times.ownMs;
    process_.send("time " + number(own / 10));
    process_.send("otim " + number(times.otherMs / 10));
    if (moves.size() == seen_ + 1 && started_) {
      process_.send("usermove " + moves.back());
    } else {
      for (std::size_t i = seen_; i < moves.size(); ++i) process_.send("usermove " + moves[i]);
      process_.send("go");
    }
    started_ = true;
    const std::optional<std::string> line =
        process_.waitFor("move ", Milliseconds(own + PATIENCE_MS));
    if (!line) {
      broken_ = true;
      return std::nullopt;
    }
    seen_ = moves.size() + 1;
    Reply reply;
    reply.move = line->substr(5);
    account.settle(reply);
    return reply;
  }

  void endGame() override {
    process_.send("result 1/2-1/2 {end}");
    process_.send("force");
    process_.send("ping 2");
    if (!process_.waitFor("pong 2", Milliseconds(PATIENCE_MS))) broken_ = true;
    started_ = false;
  }

 private:
  GameClock clock_;
  std::size_t seen_ = 0;  // moves of the game that the engine knows of
  bool started_ = false;
};

}  // namespace

std::unique_ptr<Player> makeUciPlayer(const PlayerSettings& settings) {
  return std::make_unique<UciPlayer>(settings);
}
std::unique_ptr<Player> makeXboardPlayer(const PlayerSettings& settings) {
  return std::make_unique<XboardPlayer>(settings);
}

}  // namespace ombrin
