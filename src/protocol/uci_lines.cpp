#include "protocol/uci_lines.h"

#include "board/notation.h"
#include "util/format.h"

namespace ombrin {

namespace {

using Count = unsigned long long;

// Speeds measured over less than this say nothing.
constexpr std::uint64_t LONG_ENOUGH_FOR_SPEED = 99;

void appendScore(std::string& line, Score score) {
  if (score > MATE_BOUND || score < -MATE_BOUND) {
    append(line, " score mate %i", score.movesToMate());
  } else {
    append(line, " score cp %i", score.value());
  }
}

template <typename Report>
void appendEffort(std::string& line, const Report& effort) {
  append(line, " time %llu nodes %llu", Count{effort.time}, Count{effort.nodes});
  if (effort.time > LONG_ENOUGH_FOR_SPEED) {
    append(line, " nps %llu", Count{effort.nodes * 1000 / effort.time});
  }
}

}  // namespace

std::string uciInfoLine(const SearchReport& report) {
  std::string text;
  append(text, "info depth %i seldepth %i", report.depth, report.selectiveDepth);
  appendScore(text, report.score);
  appendEffort(text, report);
  if (!report.line.moves().empty()) text += " pv ";
  for (const Move move : report.line.moves()) {
    text += moveToCoordinates(move);
    text += ' ';
  }
  text += '\n';
  return text;
}

std::string uciCurrentMoveLine(const RootMoveReport& report) {
  std::string text = "info currmove ";
  text += moveToCoordinates(report.move);
  append(text, " currmovenumber %i", report.number + 1);
  appendEffort(text, report);
  append(text, " hashfull %u\n", report.hashFull);
  return text;
}

std::string uciBestMoveLine(Move bestMove, Move ponderMove) {
  std::string text = "bestmove " + moveToCoordinates(bestMove);
  if (!ponderMove.isNull()) text += " ponder " + moveToCoordinates(ponderMove);
  text += '\n';
  return text;
}

}  // namespace ombrin
