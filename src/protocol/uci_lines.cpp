#include "protocol/uci_lines.h"

#include "board/notation.h"
#include "protocol/append.h"

namespace ombrin {

namespace {

using Count = unsigned long long;

// Speeds measured over less than this say nothing.
constexpr std::uint64_t LONG_ENOUGH_FOR_SPEED = 99;

void appendScore(std::string& line, Score score) {
  constexpr int MATE_BOUND = 29000;
  const int value = score.value();
  if (value > MATE_BOUND) {
    append(line, " score mate %i", (MATE.value() + 1 - value) / 2);
  } else if (value < -MATE_BOUND) {
    append(line, " score mate -%i", (value + MATE.value()) / 2);
  } else {
    append(line, " score cp %i", value);
  }
}

void appendSpeed(std::string& line, SearchEffort effort) {
  if (effort.time > LONG_ENOUGH_FOR_SPEED) {
    append(line, " nps %llu", Count{effort.nodes * 1000 / effort.time});
  }
}

}  // namespace

std::string uciInfoLine(int depth, int selectiveDepth, Score score, SearchEffort effort,
                        std::span<const Move> line) {
  std::string text;
  append(text, "info depth %i seldepth %i", depth, selectiveDepth);
  appendScore(text, score);
  append(text, " time %llu", Count{effort.time});
  append(text, " nodes %llu", Count{effort.nodes});
  appendSpeed(text, effort);
  text += " pv ";
  for (const Move move : line) {
    text += moveToCoordinates(move);
    text += ' ';
  }
  text += '\n';
  return text;
}

std::string uciCurrentMoveLine(Move move, int moveNumber, SearchEffort effort, unsigned hashFull) {
  std::string text = "info currmove ";
  text += moveToCoordinates(move);
  append(text, " currmovenumber %i", moveNumber + 1);
  append(text, " time %llu", Count{effort.time});
  append(text, " nodes %llu", Count{effort.nodes});
  appendSpeed(text, effort);
  append(text, " hashfull %u\n", hashFull);
  return text;
}

std::string uciBestMoveLine(Move bestMove, Move ponderMove) {
  std::string text = "bestmove " + moveToCoordinates(bestMove);
  if (!ponderMove.isNull()) text += " ponder " + moveToCoordinates(ponderMove);
  text += '\n';
  return text;
}

}  // namespace ombrin
