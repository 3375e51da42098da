#include "protocol/uci_front_end.h"

#include "platform/tick.h"
#include "protocol/end_process.h"
#include "protocol/program_name.h"
#include "protocol/uci_log.h"
#include "util/file_system.h"
#include "util/format.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

const UciFrontEnd::Command UciFrontEnd::COMMANDS[] = {
    {"uci", &UciFrontEnd::enter},
    {"position", &UciFrontEnd::position},
    {"go", &UciFrontEnd::go},
    {"isready", &UciFrontEnd::isReady},
    {"setoption", &UciFrontEnd::setOption},
    {"ucinewgame", &UciFrontEnd::newGame},
    {"ponderhit", &UciFrontEnd::ponderhit},
    {"stop", &UciFrontEnd::stop},
    {"quit", &UciFrontEnd::quit},
};

bool UciFrontEnd::handleLine(const RefString& command, const RefString& arguments) {
  if (command.empty()) return active_;
  if (active_) logLine(command.c_str(), arguments.c_str());
  tokens_.setTrimmedText(arguments);
  for (const Command& known : COMMANDS) {
    if (!(command == known.word)) continue;
    (this->*known.handle)();
    send("");
    flushLog();
    return true;
  }
  if (active_) trace(("unknown uci command: " + std::string(command.view())).c_str());
  return false;
}

void UciFrontEnd::enter() {
  control_.stopSearchOfOthers(*this);
  redirectLog();
  redirectErrors();
  announce();
  active_ = true;
  logLine("<--uciok");
}

void UciFrontEnd::redirectLog() {
  const std::optional<std::string> name = logs_.nextName(settings_.logDirectory);
  if (!name) return;
  logInfo(UCI_LOG, "redirecting output to %s, file=%s\n", currentDirectory().c_str(),
          name->c_str());
  std::FILE* file = logs_.open(*name);
  if (file == nullptr) print(stderr, "redirect failed!\n");
  logFile = file;
}

void UciFrontEnd::redirectErrors() {
  std::string name;
  append(name, "%s-%s-error.log", PROGRAM_NAME, VERSION);
  // Reopening closes the stream first, so it must not be tried where it would fail.
  std::FILE* probe = std::fopen(name.c_str(), "a");
  if (probe == nullptr) return;
  std::fclose(probe);
  if (std::freopen(name.c_str(), "a", stderr) != nullptr) {
    std::setvbuf(stderr, nullptr, _IONBF, 0);
  }
}

void UciFrontEnd::announce() {
  std::string text = "\n";
  append(text, "id name %s-%s\n", PROGRAM_NAME, VERSION);
  append(text, "id author %s\n", AUTHOR);
  text += optionLines();
  append(text, "uciok\n");
  send(text);
}

void UciFrontEnd::isReady() {
  control_.search().makeReady();
  send("readyok\n");
  logLine("<--readyok");
}

void UciFrontEnd::newGame() {
  trace("newgame!");
  game_.returnToBook();
}

void UciFrontEnd::stop() {
  trace("stop()...");
  switch (status_.replace(UciStatus::IDLE)) {
    case UciStatus::IDLE:
      break;
    case UciStatus::HELD_BACK:
      reportHeldBack();
      break;
    case UciStatus::POSITION:
      print(stderr, "uci:: stop without preceeding go?\n");
      sendBestMove(NULL_MOVE, NULL_MOVE);
      break;
    case UciStatus::SEARCHING:
    case UciStatus::PONDERING:
    case UciStatus::ANALYZING:
      logInfo(UCI_LOG, "uci:stop() START\n");
      control_.stopSearch();
      logInfo(UCI_LOG, "uci:stop() END\n");
      break;
  }
  trace("stop() ok");
}

void UciFrontEnd::ponderhit() {
  trace("ponderhit()...");
  const auto next = [](UciStatus status) {
    switch (status) {
      case UciStatus::PONDERING:
        return UciStatus::SEARCHING;
      case UciStatus::HELD_BACK:
        return UciStatus::IDLE;
      default:
        return status;
    }
  };
  switch (status_.change(next)) {
    case UciStatus::PONDERING:
      control_.ponderhit(limits_);
      break;
    case UciStatus::HELD_BACK:
      logInfo(UCI_LOG, "Uci:ponderhit(): already finished\n");
      reportHeldBack();
      break;
    case UciStatus::IDLE:
      break;
    case UciStatus::POSITION:
      print(stderr, "uci:: ponderhit without preceeding go(): send bestmove 0000\n");
      sendBestMove(NULL_MOVE, NULL_MOVE);
      break;
    case UciStatus::SEARCHING:
    case UciStatus::ANALYZING:
      print(stderr, "uci::ponderhit status==SEARCHING, ponderhit ignored\n");
      break;
  }
  trace("ponderhit() ok");
}

void UciFrontEnd::quit() {
  logInfo(UCI_LOG, "exit()!\n");
  endProcess();
}

void UciFrontEnd::send(std::string_view line) {
  const std::lock_guard lock(outputLock_);
  output_.putString(line);
  output_.flush();
}

void UciFrontEnd::trace(const char* text) {
  if (settings_.trace) {
    std::string line;
    append(line, "trace %010llu[%s]: %s\n", static_cast<unsigned long long>(tickCount()),
           statusName(status_.current()), text);
    send(line);
  }
  logLine(text);
}

void UciFrontEnd::logLine(const char* text, const char* suffix) {
  logInfo(UCI_LOG, "%010llu:%s%s\n", static_cast<unsigned long long>(tickCount()),
          text == nullptr ? "?" : text, suffix);
  flushLog();
}

}  // namespace ombrin
