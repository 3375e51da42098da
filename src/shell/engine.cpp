#include "shell/engine.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "board/fen.h"
#include "platform/processors.h"
#include "platform/tick.h"
#include "shell/engine_settings.h"
#include "util/print.h"
#include "util/scan.h"
#include "util/text_file.h"

namespace ombrin {

Engine::~Engine() {
  // Those who listen to a search go before it does.
  const auto lock = control_.lockGame();
  control_.stopSearch();
}

void Engine::start(const std::string& iniFile) {
  print(stdout, "inifile=%s\n", iniFile.c_str());
  if (!settings_.load(iniFile)) print(stdout, "could not load inifile: %s\n", iniFile.c_str());
  console_.setIniFile(iniFile);
  const EngineSettings settings(settings_);
  applySettings(settings);
  startThreads(settings.threads);
  const auto lock = control_.lockGame();
  game_.setUp(START_FEN);
  console_.showBoard();
}

void Engine::applySettings(const EngineSettings& settings) {
  // Without the key, the front-ends keep what the time left allows.
  const auto timeGap = [this](std::string_view key, int seconds) {
    return settings_.get(key).empty() ? std::nullopt
                                      : std::optional(clampToInt(std::int64_t{seconds} * 1000));
  };

  console_.loadBook(RefString(settings.bookFile));

  uci_.configure({.logDirectory = settings.uciLogDirectory,
                  .trace = settings.uciTrace > 0,
                  .timeGap = timeGap(UCI_TIME_GAP_KEY, settings.uciTimeGap)});
  winboard_.configure({.logDirectory = settings.winboardLogDirectory,
                       .timeGap = timeGap(WINBOARD_TIME_GAP_KEY, settings.winboardTimeGap)});

  if (!settings.bitbaseDirectory.empty()) {
    bitbases_.open(settings.bitbaseDirectory);
    bitbases_.load(settings.bitbaseCacheMb);
  }
  // The table has its default size already, and would say so once more.
  if (!settings_.get(TABLE_MB_KEY).empty()) {
    tt_.resize(static_cast<std::uint64_t>(std::max(settings.tableMb, 0)) * 1024);
  }
  console_.setProcessorClock(settings.processorMhz);
}

void Engine::startThreads(int threads) {
  const int processors = std::max(processorCount(), 1);
  if (threads > processors) {
    print(stdout, "!--only %i cpu's present, using %i searchthreads\n", processors, processors);
    threads = processors;
  }
  if (threads == 0) threads = processors;
  if (threads > 1) print(stdout, "--using parallel search with %i threads\n", threads);
  search_.setThreads(threads);
  std::srand(static_cast<unsigned>(tickCount()));
  search_.boot();
}

void Engine::run() {
  TextFile input(stdin);
  while (!console_.isLeaving()) {
    if (!uci_.isActive() && !winboard_.isActive()) print(stdout, "%% ");
    const auto line = input.readLine();
    if (!line) return;
    handleLine(*line);
  }
}

void Engine::handleLine(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  words_.setText(line);
  const RefString command = words_.nextToken();
  const RefString& arguments = words_.rest();

  // Leaving needs nothing of the game, and must not wait for a search thread that holds its lock
  // because nobody reads what it prints.
  std::unique_lock<std::mutex> lock;
  if (!(command == "quit")) lock = control_.lockGame();

  // Which front-ends may answer is decided before one of them is entered.
  const bool uciMay = !winboard_.isActive();
  const bool winboardMay = !uci_.isActive();
  if (uciMay && uci_.handleLine(command, arguments)) return;
  if (winboardMay && winboard_.handleLine(command, arguments)) return;
  // To a GUI, what nobody understands is no command; the log has it.
  if (uci_.isActive() && !console_.knows(command)) return;
  console_.handleLine(command, arguments);
}

}  // namespace ombrin
