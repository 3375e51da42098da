// The listing of a position's book moves: BookPicker's output.
#include <array>
#include <cmath>
#include <span>
#include <string>

#include "book/book_picker.h"
#include "util/format.h"
#include "util/print.h"

namespace ombrin {

namespace {

struct Marker {
  RejectFlag flag;
  const char* text;
};
constexpr std::array<Marker, 5> MARKERS = {{
    {TOO_FEW_GAMES, "<games"},
    {LOW_ELO, "<elo"},
    {LOW_SCORE, "<score"},
    {SMALL_GAME_SHARE, "<games%"},
    {ELO_FAR_BELOW_BEST, "<elo+-"},
}};

const std::string RULE(87, '-');

// Scores and their parts in percent.
struct ScoreSummary {
  double score = 0;
  double error = 0;  // standard error of the score
  double wins = 0;
  double draws = 0;

  ScoreSummary(double won, double drawn, double games) {
    if (games == 0) return;
    const double mean = (2 * won + drawn) / (2 * games);
    // Of one game's result, which is 0, a half or 1.
    const double variance = std::max(0.0, mean * (1 - mean) - drawn / (4 * games));
    score = 100 * mean;
    error = 100 * std::sqrt(variance / games);
    wins = 100 * won / games;
    draws = 100 * drawn / games;
  }
};

void printSettings(std::string line, std::span<const IniRow<PlaySettings>> rows,
                   const PlaySettings& settings) {
  const char* separator = "";
  for (const IniRow<PlaySettings>& row : rows) {
    append(line, "%s%s=%1.0f", separator, row.name().c_str(), row.number(settings).value_or(0));
    separator = ", ";
  }
  print(stdout, "%s\n", line.c_str());
}

void printMove(const BookEntry& move, const PickRecord& record, bool hasScore) {
  print(stdout, "%5.1f%%  %s %6.0f %8llu", record.probability * 100, moveText(move).c_str(),
        record.elo, static_cast<unsigned long long>(move.games()));
  if (hasScore) {
    const ScoreSummary summary(move.wins, move.draws, static_cast<double>(move.games()));
    print(stdout, " %6.2f %6.2f %6.1f %6.1f", summary.score, summary.error, summary.wins,
          summary.draws);
  } else {
    print(stdout, " %6s %6s %6s %6s", "-", "-", "-", "-");
  }
  print(stdout, " %6.1f %6.1f %7.2f %7.2f", record.eloShare * 100, record.gameShare * 100,
        record.scoreShare * 100, record.combined * 100);
  for (const Marker& marker : MARKERS) {
    if ((record.rejected & marker.flag) != 0) print(stdout, " %s", marker.text);
  }
  print(stdout, "\n");
}

void printTotals(std::span<const BookEntry> moves, bool hasScore) {
  std::uint64_t wins = 0;
  std::uint64_t draws = 0;
  std::uint64_t games = 0;
  double eloFactor = 0;
  for (const BookEntry& move : moves) {
    wins += move.wins;
    draws += move.draws;
    games += move.games();
    eloFactor += move.eloFactor;
  }
  print(stdout, "%s\n", RULE.c_str());
  print(stdout, "100.0%%       %6.0f %8llu", eloOf(eloFactor),
        static_cast<unsigned long long>(games));
  if (hasScore) {
    const ScoreSummary summary(static_cast<double>(wins), static_cast<double>(draws),
                               static_cast<double>(games));
    print(stdout, " %6.1f %6.1f %6.2f %6.2f", summary.score, summary.error, summary.wins,
          summary.draws);
  }
  print(stdout, "\n");
}

}  // namespace

void BookPicker::show() {
  const int count = book_.readMoves();
  if (count == 0) {
    print(stdout, "position not in book\n");
    return;
  }
  printSettings("criteria: ", PlaySettings::criteria(), settings_);
  printSettings("weights : ", PlaySettings::weights(), settings_);
  std::array<double, BookFile::MAX_MOVES_READ> probabilities;
  weigh(count, probabilities, book_.board().side);
  print(stdout,
        "\n pick   move    elo    games  score    +/-   drw%%   win%%   elo%%  game%%  score%%  "
        "combi%%\n%s\n",
        RULE.c_str());
  const std::span<const BookEntry> moves = book_.moves(count);
  for (int index = 0; index < count; ++index) {
    printMove(moves[index], records_[index], book_.hasScore());
  }
  if (count > 1) printTotals(moves, book_.hasScore());
}

}  // namespace ombrin
