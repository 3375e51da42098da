// Plays games between two engines and watches every move, clock and reply.
//
//   referee [--games N] [--protocol uci|xboard|mixed] [--engine PATH] [--opponent PATH]
//           [--opponent-protocol uci|xboard] [--threads N] [--seed N] [--ponder] [--move-time MS]
//           [--base MS --increment MS] [--ini FILE] [--games-per-process N]
//
// Prints a line per game and, at the end, the results by reason. Exit status 1 when any game ended
// by an illegal move, a loss on time, a stall or a crash, or when an engine's memory grew. A flag
// that falls because other programs had the processors is counted apart, as the system's scheduler
// tells how long an engine waited for one.
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "soak/game.h"
#include "soak/player.h"

namespace ombrin {
namespace {

struct Options {
  int games = 10;
  std::string protocol = "uci";
  std::string engine;
  std::string opponent;
  std::string opponentProtocol;
  int threads = 1;
  unsigned seed = 1;
  bool ponder = false;
  std::string iniFile;
  int gamesPerProcess = 20;
  GameClock clock;
};

[[noreturn]] void usage() {
  std::fprintf(stderr, "usage: referee --engine PATH [options]\n");
  std::exit(2);
}

Options parseOptions(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string name = arguments[i];
    if (name == "--ponder") {
      options.ponder = true;
      continue;
    }
    if (++i == count) usage();
    const std::string value = arguments[i];
    if (name == "--games") {
      options.games = std::stoi(value);
    } else if (name == "--protocol") {
      options.protocol = value;
    } else if (name == "--engine") {
      options.engine = value;
    } else if (name == "--opponent") {
      options.opponent = value;
    } else if (name == "--opponent-protocol") {
      options.opponentProtocol = value;
    } else if (name == "--threads") {
      options.threads = std::stoi(value);
    } else if (name == "--seed") {
      options.seed = static_cast<unsigned>(std::stoul(value));
    } else if (name == "--ini") {
      options.iniFile = value;
    } else if (name == "--games-per-process") {
      options.gamesPerProcess = std::max(std::stoi(value), 3);
    } else if (name == "--move-time") {
      options.clock.moveTimeMs = std::stoi(value);
    } else if (name == "--base") {
      options.clock.baseMs = std::stoi(value);
    } else if (name == "--increment") {
      options.clock.incrementMs = std::stoi(value);
    } else {
      usage();
    }
  }
  if (options.engine.empty()) usage();
  if (options.opponent.empty()) options.opponent = options.engine;
  if (options.opponentProtocol.empty()) options.opponentProtocol = options.protocol;
  return options;
}

std::string protocolOf(const std::string& wanted, int game) {
  return wanted != "mixed" ? wanted : game % 2 == 0 ? "uci" : "xboard";
}

std::unique_ptr<Player> startPlayer(const Options& options, const std::string& program,
                                    const std::string& protocol, std::mt19937& random) {
  PlayerSettings settings;
  settings.program = program;
  settings.threads = options.threads;
  settings.hashMb = 1 << random() % 9;
  settings.ponder = options.ponder;
  settings.iniFile = options.iniFile;
  return protocol == "uci" ? makeUciPlayer(settings) : makeXboardPlayer(settings);
}

int run(const Options& options) {
  std::mt19937 random(options.seed);
  std::map<std::string, int> reasons;
  std::array<int, 3> results{};  // wins of the engine, draws, losses
  long firstKb = 0;
  long lastKb = 0;
  long largestGrowthKb = 0;
  long longestLagMs = 0;
  int lateMoves = 0;
  bool failed = false;
  std::unique_ptr<Player> engine;
  std::unique_ptr<Player> opponent;
  for (int game = 0; game < options.games; ++game) {
    // New processes now and then, the same ones in between, so that both are tried.
    if (game % options.gamesPerProcess == 0 || engine->isBroken() || opponent->isBroken()) {
      engine = startPlayer(options, options.engine,
                           protocolOf(options.protocol, game / options.gamesPerProcess), random);
      opponent =
          startPlayer(options, options.opponent,
                      protocolOf(options.opponentProtocol, game / options.gamesPerProcess), random);
      firstKb = 0;
    }
    const bool engineIsWhite = game % 2 == 0;
    Player& white = engineIsWhite ? *engine : *opponent;
    Player& black = engineIsWhite ? *opponent : *engine;
    const GameResult result = playGame(white, black, options.clock, random);
    const int score = engineIsWhite ? result.score : -result.score;
    ++results[static_cast<std::size_t>(1 - score)];
    ++reasons[result.reason];
    failed = failed || result.isFault;
    lastKb = engine->residentKb();
    if (game % options.gamesPerProcess == 2) firstKb = lastKb;
    std::printf("%5d %-7s %-40s %4d plies %8ld kB  %s\n", game + 1,
                score > 0   ? "won"
                : score < 0 ? "lost"
                            : "drawn",
                result.reason.c_str(), result.plies, lastKb,
                result.isFault ? result.record.c_str() : "");
    std::fflush(stdout);
    lateMoves += result.lateMoves;
    longestLagMs = std::max(longestLagMs, result.longestLagMs);
    if (firstKb == 0) continue;
    // The table takes its memory as its entries are first used; all else must stay as it is.
    const long tableKb = 1024L * engine->settings().hashMb;
    largestGrowthKb = std::max(largestGrowthKb, lastKb - firstKb);
    if (lastKb > firstKb + tableKb + 4096) {
      std::printf("memory grew from %ld to %ld kB, with a table of %ld kB\n", firstKb, lastKb,
                  tableKb);
      failed = true;
      firstKb = lastKb;
    }
  }
  std::printf("engine: +%d =%d -%d\n", results[0], results[1], results[2]);
  for (const auto& [reason, count] : reasons) std::printf("%6d  %s\n", count, reason.c_str());
  std::printf("longest lag %ld ms, %d moves late without a processor\n", longestLagMs, lateMoves);
  std::printf("largest growth of memory %ld kB\n", largestGrowthKb);
  return failed ? 1 : 0;
}

}  // namespace
}  // namespace ombrin

int main(int count, char** arguments) {
  return ombrin::run(ombrin::parseOptions(count, arguments));
}
