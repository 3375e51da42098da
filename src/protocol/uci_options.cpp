// The part of the UCI front-end that deals with options.
#include "protocol/uci_front_end.h"
#include "protocol/uci_log.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

const UciFrontEnd::Option UciFrontEnd::OPTIONS[] = {
    {"UCI_Opponent", &UciFrontEnd::setOpponent}, {"Hash", &UciFrontEnd::setHash},
    {"Clear", &UciFrontEnd::clearHash},          {"Ponder", &UciFrontEnd::setPonder},
    {"OwnBook", &UciFrontEnd::setOwnBook},       {"Threads", &UciFrontEnd::setThreads},
};

void UciFrontEnd::setOption() {
  RefString name = tokens_.nextToken();
  if (name == "name") name = tokens_.nextToken();
  for (const Option& option : OPTIONS) {
    if (name == option.name) return (this->*option.set)();
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
  constexpr int DEFAULT_MB = 32;
  const std::optional<int> megabytes = numberValue(DEFAULT_MB);
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
