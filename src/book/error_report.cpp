#include "book/error_report.h"

#include <string_view>

#include "util/print.h"

namespace ombrin {

namespace {

// By kind, for the games that are only counted.
constexpr std::array<const char*, GameProblem::KINDS> KIND_TEXTS = {
    "whose text contradicts itself", "from positions that are refused", "with illegal moves"};

// Fit for a line of its own: collections hold anything.
std::string printable(std::string_view text) {
  constexpr std::size_t LONGEST = 60;
  std::string result(text.substr(0, LONGEST));
  for (char& c : result) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  }
  return text.size() > LONGEST ? result + "..." : result;
}

std::string playersOf(const PgnGame& game) {
  if (game.white.empty() && game.black.empty()) return "";
  const auto name = [](const std::string& text) { return text.empty() ? "?" : printable(text); };
  return ", " + name(game.white) + " - " + name(game.black);
}

}  // namespace

void ErrorReport::add(const PgnGame& game, const GameProblem& problem, std::uint32_t line,
                      std::int64_t number) {
  if (++counts_[problem.kind] > MOST_OF_A_KIND) return;
  const std::string move = problem.move.empty() ? "" : printable(problem.move) + ": ";
  print(stdout, "-->error in line %u, game %lli%s: %s%s\n", line, static_cast<long long>(number),
        playersOf(game).c_str(), move.c_str(), printable(problem.reason).c_str());
}

void ErrorReport::finish() const {
  for (std::size_t kind = 0; kind < counts_.size(); ++kind) {
    const std::int64_t more = counts_[kind] - MOST_OF_A_KIND;
    if (more <= 0) continue;
    print(stdout, "-->and %lli more games %s\n", static_cast<long long>(more), KIND_TEXTS[kind]);
  }
}

}  // namespace ombrin
