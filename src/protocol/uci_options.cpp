// The part of the UCI front-end that deals with options.
#include "protocol/program_name.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_log.h"
#include "util/format.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

// The size that a "Hash" without a number asks for.
static constexpr int DEFAULT_HASH_MB = 32;

// Types are filled up where the words behind them are to stand below each other.
const UciFrontEnd::Option UciFrontEnd::OPTIONS[] = {
    {"Hash",
     "spin ",
     [](const UciFrontEnd&) { return std::to_string(DEFAULT_HASH_MB); },
     {{1, 4096}},
     &UciFrontEnd::setHash},
    {"Clear Hash", "button", nullptr, {}, &UciFrontEnd::clearHash},
    {"Ponder",
     "check",
     [](const UciFrontEnd&) { return std::string("false"); },
     {},
     &UciFrontEnd::setPonder},
    {"OwnBook",
     "check",
     [](const UciFrontEnd&) { return std::string("true"); },
     {},
     &UciFrontEnd::setOwnBook},
    {"Threads",
     "spin",
     [](const UciFrontEnd& uci) { return std::to_string(uci.control_.search().threadCount()); },
     {{1, SearchController::MAX_THREADS}},
     &UciFrontEnd::setThreads},
    {"UCI_Opponent", "string", nullptr, {}, &UciFrontEnd::setOpponent},
    {"UCI_EngineAbout",
     "string",
     [](const UciFrontEnd&) { return std::string(PROGRAM_NAME) + " by " + AUTHOR; },
     {},
     &UciFrontEnd::ignoreOption},
};

std::string UciFrontEnd::optionLines() const {
  std::string text;
  for (const Option& option : OPTIONS) {
    append(text, "option name %-15s type %s", option.name, option.type);
    if (option.standard != nullptr) text += " default " + option.standard(*this);
    if (option.range) append(text, " min %i max %i", option.range->least, option.range->most);
    text += '\n';
  }
  return text;
}

void UciFrontEnd::setOption() {
  RefString name = tokens_.nextToken();
  if (name == "name") name = tokens_.nextToken();
  for (const Option& option : OPTIONS) {
    const std::string_view announced = option.name;
    if (name == announced.substr(0, announced.find(' '))) return (this->*option.set)();
  }
  print(stderr, "Option not supported: %s\n", name.c_str());
}

void UciFrontEnd::setOpponent() {
  tokens_.nextToken();
  opponentTitle_ = tokens_.nextToken();
  opponentElo_ = toInt(tokens_.nextToken().view());
  opponentKind_ = tokens_.nextToken();
  opponentName_ = tokens_.nextToken();
  logInfo(UCI_LOG, "Opponent=%s %s, %s, elo=%i\n", opponentTitle_.c_str(), opponentName_.c_str(),
          opponentKind_.c_str(), opponentElo_);
}

std::optional<int> UciFrontEnd::numberValue(int absent) {
  tokens_.nextToken();
  if (tokens_.atEnd()) return absent;
  const std::optional<std::int64_t> number = numberToken();
  if (!number) return std::nullopt;
  return clampToInt(*number);
}

void UciFrontEnd::setHash() {
  const std::optional<int> megabytes = numberValue(DEFAULT_HASH_MB);
  if (!megabytes || *megabytes < 0) return;
  const auto size = static_cast<std::uint64_t>(*megabytes);
  control_.stopSearch();
  logInfo(UCI_LOG, "resizing hash to %uMb\n", static_cast<unsigned>(size));
  control_.search().tt().resize(size * 1024);
  control_.search().makeReady();
  logInfo(UCI_LOG, "resized\n");
}

void UciFrontEnd::clearHash() {
  RefString token = tokens_.nextToken();
  if (token.empty()) token = tokens_.nextToken();
  if (!(token == "Hash")) return;
  control_.stopSearch();
  logLine("clearing tt...");
  control_.search().tt().clear();
  logLine("tt cleared");
}

bool UciFrontEnd::switchValue() {
  RefString token = tokens_.nextToken();
  if (token == "value") token = tokens_.nextToken();
  return token == "true";
}

void UciFrontEnd::setPonder() {
  canPonder_ = switchValue();
  logInfo(UCI_LOG, "canponder=%u\n", canPonder_ ? 1U : 0U);
}

void UciFrontEnd::setOwnBook() {
  useBook_ = switchValue();
  logInfo(UCI_LOG, "usebook=%u\n", useBook_ ? 1U : 0U);
}

void UciFrontEnd::setThreads() {
  const std::optional<int> count = numberValue(1);
  if (!count) return;
  control_.stopSearch();
  logInfo(UCI_LOG, "setting cpus=%i\n", *count);
  control_.search().setThreads(*count);
}

}  // namespace ombrin
