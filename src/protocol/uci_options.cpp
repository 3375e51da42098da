// The part of the UCI front-end that deals with options.
#include <algorithm>

#include "protocol/program_name.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_log.h"
#include "util/format.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

namespace {

// The size that a "Hash" without a number asks for.
constexpr int DEFAULT_HASH_MB = 32;
constexpr int LONGEST_OVERHEAD = 60000;

bool isSameWord(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

bool isOn(std::string_view value) {
  return isSameWord(value, "true");
}

// The whole number that a value is; nothing, and a line in the log, when it is none.
std::optional<int> numberOf(std::string_view value) {
  std::string_view rest = value;
  if (const auto number = takeNumber(rest); number && rest.empty()) return clampToInt(*number);
  logWarn(UCI_LOG, "setoption: not a number: %s\n", std::string(value).c_str());
  return std::nullopt;
}

}  // namespace

const UciFrontEnd::Option UciFrontEnd::OPTIONS[] = {
    {"Hash",
     "spin",
     [](const UciFrontEnd& uci) {
       return std::to_string(std::max<std::size_t>(uci.control_.search().tt().bytes() >> 20, 1));
     },
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
    {"Move Overhead",
     "spin",
     [](const UciFrontEnd&) { return std::string("0"); },
     {{0, LONGEST_OVERHEAD}},
     &UciFrontEnd::setMoveOverhead},
    {"UCI_AnalyseMode",
     "check",
     [](const UciFrontEnd&) { return std::string("false"); },
     {},
     &UciFrontEnd::setAnalyseMode},
    {"UCI_Opponent",
     "string",
     [](const UciFrontEnd&) { return std::string("<empty>"); },
     {},
     &UciFrontEnd::setOpponent},
    {"UCI_EngineAbout",
     "string",
     [](const UciFrontEnd&) { return std::string(PROGRAM_NAME) + " by " + AUTHOR; },
     {},
     &UciFrontEnd::ignoreOption},
};

std::string UciFrontEnd::optionLines() const {
  std::string text;
  for (const Option& option : OPTIONS) {
    append(text, "option name %s type %s", option.name, option.type);
    if (option.standard != nullptr) text += " default " + option.standard(*this);
    if (option.range) append(text, " min %i max %i", option.range->least, option.range->most);
    text += '\n';
  }
  return text;
}

// setoption [name] <one word or more> [value <the rest>]
void UciFrontEnd::setOption() {
  std::string name;
  while (!tokens_.atEnd()) {
    const RefString word = tokens_.nextToken();
    if (word.empty() || (name.empty() && word == "name")) continue;
    if (word == "value") break;
    if (!name.empty()) name += ' ';
    name += word.view();
  }
  const RefString rest = tokens_.rest();
  std::string_view value = rest.view();
  value = value.substr(0, value.find_last_not_of(' ') + 1);
  for (const Option& option : OPTIONS) {
    if (isSameWord(name, option.name)) return (this->*option.set)(value);
  }
  print(stderr, "Option not supported: %s\n", name.c_str());
}

void UciFrontEnd::setOpponent(std::string_view value) {
  Tokenizer words;
  words.setTrimmedText(RefString(value));
  opponentTitle_ = words.nextToken();
  opponentElo_ = toInt(words.nextToken().view());
  opponentKind_ = words.nextToken();
  opponentName_ = words.nextToken();
  logInfo(UCI_LOG, "Opponent=%s %s, %s, elo=%i\n", opponentTitle_.c_str(), opponentName_.c_str(),
          opponentKind_.c_str(), opponentElo_);
}

void UciFrontEnd::setHash(std::string_view value) {
  const std::optional<int> megabytes = value.empty() ? DEFAULT_HASH_MB : numberOf(value);
  if (!megabytes || *megabytes < 0) return;
  const auto size = static_cast<std::uint64_t>(*megabytes);
  control_.stopSearch();
  logInfo(UCI_LOG, "resizing hash to %uMb\n", static_cast<unsigned>(size));
  control_.search().tt().resize(size * 1024);
  control_.search().makeReady();
  logInfo(UCI_LOG, "resized\n");
}

void UciFrontEnd::clearHash(std::string_view /*value*/) {
  control_.stopSearch();
  logLine("clearing tt...");
  control_.search().tt().clear();
  logLine("tt cleared");
}

void UciFrontEnd::setPonder(std::string_view value) {
  canPonder_ = isOn(value);
  logInfo(UCI_LOG, "canponder=%u\n", canPonder_ ? 1U : 0U);
}

void UciFrontEnd::setOwnBook(std::string_view value) {
  useBook_ = isOn(value);
  logInfo(UCI_LOG, "usebook=%u\n", useBook_ ? 1U : 0U);
}

void UciFrontEnd::setThreads(std::string_view value) {
  const std::optional<int> count = value.empty() ? 1 : numberOf(value);
  if (!count) return;
  control_.stopSearch();
  logInfo(UCI_LOG, "setting cpus=%i\n", *count);
  control_.search().setThreads(*count);
}

void UciFrontEnd::setMoveOverhead(std::string_view value) {
  if (const std::optional<int> milliseconds = numberOf(value)) {
    moveOverhead_ = std::clamp(*milliseconds, 0, LONGEST_OVERHEAD);
  }
}

void UciFrontEnd::setAnalyseMode(std::string_view value) {
  isAnalysis_ = isOn(value);
}

}  // namespace ombrin
