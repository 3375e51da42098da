#include "protocol/winboard_front_end.h"

#include <cstdarg>

#include "board/fen.h"
#include "platform/end_request.h"
#include "protocol/end_process.h"
#include "protocol/program_name.h"
#include "protocol/refusal.h"
#include "util/file_system.h"
#include "util/format.h"
#include "util/log.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

namespace {

// In coordinate or algebraic notation? No word of the protocol does.
bool looksLikeMove(std::string_view word) {
  const bool castles = word.starts_with("O-O") || word.starts_with("o-o");
  return (castles || (word.size() > 1 && word.find_first_of("12345678") < word.size())) &&
         word.find_first_not_of("KQRBNOabcdefghnoqrx12345678-=+#") == std::string_view::npos;
}

}  // namespace

// "cores" is what GUIs send to a program that announces the feature "smp".
const WinboardFrontEnd::Command WinboardFrontEnd::COMMANDS[] = {
    {"xboard", &WinboardFrontEnd::enter},      {"protover", &WinboardFrontEnd::listFeatures},
    {"accepted", &WinboardFrontEnd::ignore},   {"egt", &WinboardFrontEnd::ignore},
    {"rejected", &WinboardFrontEnd::rejected}, {"level", &WinboardFrontEnd::level},
    {"smp", &WinboardFrontEnd::smp},           {"memory", &WinboardFrontEnd::memory},
    {"new", &WinboardFrontEnd::newGame},       {"variant", &WinboardFrontEnd::variant},
    {"setboard", &WinboardFrontEnd::setBoard}, {"force", &WinboardFrontEnd::force},
    {"ping", &WinboardFrontEnd::ping},         {"time", &WinboardFrontEnd::time},
    {"otim", &WinboardFrontEnd::ignore},       {"st", &WinboardFrontEnd::moveTime},
    {"sd", &WinboardFrontEnd::depthLimit},     {"go", &WinboardFrontEnd::go},
    {"usermove", &WinboardFrontEnd::userMove}, {"undo", &WinboardFrontEnd::undo},
    {"remove", &WinboardFrontEnd::remove},     {"?", &WinboardFrontEnd::moveNow},
    {"draw", &WinboardFrontEnd::ignore},       {"result", &WinboardFrontEnd::stop},
    {"easy", &WinboardFrontEnd::easy},         {"hard", &WinboardFrontEnd::hard},
    {"post", &WinboardFrontEnd::post},         {"nopost", &WinboardFrontEnd::noPost},
    {"analyze", &WinboardFrontEnd::analyze},   {".", &WinboardFrontEnd::tellProgress},
    {"exit", &WinboardFrontEnd::exitAnalysis}, {"pause", &WinboardFrontEnd::pause},
    {"resume", &WinboardFrontEnd::resume},     {"name", &WinboardFrontEnd::ignore},
    {"rating", &WinboardFrontEnd::ignore},     {"ics", &WinboardFrontEnd::ignore},
    {"computer", &WinboardFrontEnd::ignore},   {"random", &WinboardFrontEnd::ignore},
    {"bk", &WinboardFrontEnd::listBookMoves},  {"hint", &WinboardFrontEnd::hint},
    {"quit", &WinboardFrontEnd::quit},         {"cores", &WinboardFrontEnd::smp},
};

bool WinboardFrontEnd::handleLine(const RefString& command, const RefString& arguments) {
  if (command.empty()) return active_;
  if (active_) {
    std::string line;
    append(line, "%s %s\n", command.c_str(), arguments.c_str());
    log_.write(WinboardLog::RECEIVED, statusName(status_.current()), line);
  }
  tokens_.setTrimmedText(arguments);
  for (const Command& known : COMMANDS) {
    if (!(command == known.word)) continue;
    (this->*known.handle)();
    return true;
  }
  if (!active_) return false;
  if (looksLikeMove(command.view())) {
    userMove(command);
    return true;
  }
  note("unknown winboard command: %s", command.c_str());
  send("Error (unknown command): %s\n", command.c_str());
  return true;
}

void WinboardFrontEnd::enter() {
  // A GUI raises this signal to draw attention to a command that follows; commands are read anyway.
  ignoreInterrupts();
  control_.stopSearchOfOthers(*this);
  redirectLog();
  active_ = true;
  send("\n");
}

void WinboardFrontEnd::redirectLog() {
  log_.open(nullptr);
  const std::optional<std::string> name = logs_.nextName(settings_.logDirectory);
  if (!name) return;
  send("redirecting logging output to %s, file=%s\n", currentDirectory().c_str(), name->c_str());
  std::FILE* file = logs_.open(*name);
  if (file == nullptr) {
    print(stderr, "logging redirect failed!\n");
    return;
  }
  log_.open(file);
  logFile = file;
}

void WinboardFrontEnd::listFeatures() {
  // The GUI waits for the last line, however long the others take.
  send("feature done=0\n");
  send("feature ping=1\n");
  send("feature setboard=1\n");
  send("feature usermove=1\n");
  send("feature myname=\"%s-%s\"\n", PROGRAM_NAME, VERSION);
  send("feature analyze=1\n");
  send("feature variants=\"normal\"\n");
  send("feature colors=0\n");
  send("feature ics=1\n");
  send("feature name=1\n");
  send("feature pause=1\n");
  send("feature smp=1\n");
  send("feature memory=1\n");
  send("feature egt=0\n");
  send("feature time=1\n");
  send("feature debug=1\n");
  send("feature sigint=0\n");
  send("feature sigterm=1\n");
  send("feature done=1\n");
}

void WinboardFrontEnd::rejected() {
  note("ignored rejected feature %s\n", tokens_.rest().c_str());
}

std::optional<int> WinboardFrontEnd::numberArgument(int absent) {
  const RefString token = tokens_.nextToken();
  if (token.empty()) return absent;
  std::string_view text = token.view();
  const std::optional<std::int64_t> number = takeNumber(text);
  if (!number) return std::nullopt;
  return clampToInt(*number);
}

void WinboardFrontEnd::smp() {
  const int count = numberArgument(0).value_or(0);
  if (count <= 0) return;
  control_.stopSearch();
  control_.search().setThreads(count);
  restartAnalysis();
}

void WinboardFrontEnd::memory() {
  const int megabytes = numberArgument(-1).value_or(-1);
  if (megabytes <= 0) return;
  control_.stopSearch();
  control_.search().tt().resize(static_cast<std::size_t>(megabytes) * 1024);
  control_.search().makeReady();
  restartAnalysis();
}

void WinboardFrontEnd::newGame() {
  stop();
  control_.search().makeReady();
  game_.returnToBook();
  game_.setUp(START_FEN);
  lastAnswer_.reset();
  engineSide_ = BLACK;
  paused_ = false;
  depthLimit_ = 0;
  fixedMoveTime_.reset();
  movesPerControl_ = 0;
  basePly_ = 0;
  millis_ = 0;
  incrementMs_ = 0;
  restartAnalysis();
}

void WinboardFrontEnd::variant() {
  const RefString name = tokens_.nextToken();
  if (!(name == "normal")) send("tellusererror variant not supported: %s\n", name.c_str());
}

void WinboardFrontEnd::setBoard() {
  stop();
  lastAnswer_.reset();
  if (!reportRefusal(game_.setUp(tokens_.rest().view()))) send("tellusererror Illegal position\n");
  restartAnalysis();
}

void WinboardFrontEnd::force() {
  stop();
  engineSide_ = sideBeforeAnalysis_ = NO_SIDE;
}

void WinboardFrontEnd::ping() {
  send("pong %i\n", numberArgument(0).value_or(0));
}

void WinboardFrontEnd::moveNow() {
  note("movenow(): stopping...");
  control_.stopSearch();
  note("movenow(): stopped");
  stop();
}

void WinboardFrontEnd::stop() {
  if (status_.replace(WinboardStatus::IDLE) != WinboardStatus::IDLE) {
    note("stopping...");
    control_.stopSearch();
    note("stopped");
  }
  if (game_.ponderMove().isNull()) return;
  note("stop(): undo pondermove");
  game_.takeBack();
}

void WinboardFrontEnd::go() {
  stop();
  paused_ = false;
  engineSide_ = game_.board().side;
  think(Caller::COMMAND_THREAD);
}

void WinboardFrontEnd::analyze() {
  stop();
  if (!analyze_) sideBeforeAnalysis_ = engineSide_;
  analyze_ = true;
  think(Caller::COMMAND_THREAD);
}

void WinboardFrontEnd::restartAnalysis() {
  if (analyze_) think(Caller::COMMAND_THREAD);
}

void WinboardFrontEnd::exitAnalysis() {
  stop();
  if (analyze_) engineSide_ = sideBeforeAnalysis_;
  analyze_ = false;
}

void WinboardFrontEnd::pause() {
  paused_ = true;
  stop();
}

void WinboardFrontEnd::resume() {
  if (!paused_) return;
  paused_ = false;
  think(Caller::COMMAND_THREAD);
}

void WinboardFrontEnd::quit() {
  endProcess();
}

void WinboardFrontEnd::send(const char* format, ...) {
  std::string line;
  std::va_list arguments;
  va_start(arguments, format);
  vappend(line, format, arguments);
  va_end(arguments);
  {
    const std::lock_guard lock(outputLock_);
    output_.putString(line);
    output_.flush();
  }
  log_.write(WinboardLog::SENT, statusName(status_.current()), line);
}

void WinboardFrontEnd::note(const char* format, ...) {
  std::string message;
  std::va_list arguments;
  va_start(arguments, format);
  vappend(message, format, arguments);
  va_end(arguments);
  log_.write(WinboardLog::NOTE, statusName(status_.current()), message);
}

}  // namespace ombrin
