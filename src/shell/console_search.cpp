// The console's commands that count, search, and limit a search.
#include <algorithm>
#include <cstdint>

#include "board/move_generation.h"
#include "board/notation.h"
#include "board/perft.h"
#include "eval/evaluator.h"
#include "platform/tick.h"
#include "shell/console.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

namespace {

void reportIllegal(const RefString& arguments) {
  print(stdout, "illegal arg: %s\n", arguments.c_str());
}

// The number that the text begins with; `absent` for an empty text.
std::optional<int> readDepth(const RefString& arguments, int absent) {
  if (arguments.empty()) return absent;
  std::string_view text = arguments.view();
  const std::optional<std::int64_t> depth = takeNumber(text);
  if (!depth) return std::nullopt;
  return clampToInt(*depth);
}

// A count that must not be negative; 0 when it is missing.
std::optional<int> takeCount(std::string_view& text, int unit) {
  const std::int64_t count = takeNumber(text).value_or(0);
  if (count < 0) return std::nullopt;
  return clampToInt(std::int64_t{clampToInt(count)} * unit);
}

// A tree deeper than this has no room in the board's history.
constexpr int MAX_TREE_DEPTH = Board::SEARCH_HEADROOM;

}  // namespace

void Console::divideTree(const RefString& arguments) {
  const int depth = readDepth(arguments, 1).value_or(1);
  if (depth > MAX_TREE_DEPTH) return reportIllegal(arguments);
  Board board;
  board.copyFrom(game_.board());
  board.makeRoom();
  divide(board, depth, board.lastMove());
}

void Console::countTree(const RefString& arguments) {
  constexpr int DEFAULT_DEPTH = 2;
  const std::optional<int> maxDepth = readDepth(arguments, DEFAULT_DEPTH);
  if (!maxDepth || *maxDepth > MAX_TREE_DEPTH) return reportIllegal(arguments);
  Board board;
  board.copyFrom(game_.board());
  board.makeRoom();
  print(stdout, "perft %i\n", *maxDepth);
  for (int depth = 1; depth <= *maxDepth; ++depth) {
    const std::uint64_t start = tickCount();
    const std::uint64_t count = perft(board, depth);
    const std::uint64_t millis = tickCount() - start;
    // What took less than a tick is counted as one.
    const double perMilli =
        static_cast<double>(count) / static_cast<double>(std::max<std::uint64_t>(millis, 1));
    const double ticks = static_cast<double>(processorClock_) * 1000 * static_cast<double>(millis);
    const auto perPosition =
        static_cast<long long>(ticks / static_cast<double>(std::max<std::uint64_t>(count, 1)));
    print(stdout, "%-20s  %10llu ops in %5.3f seconds  ops/ms=%7.0f,  ticks/op=%5lli\n", "",
          static_cast<unsigned long long>(count), static_cast<double>(millis) / 1000, perMilli,
          perPosition);
  }
}

void Console::listMoves(const RefString& /*arguments*/) {
  const Board& board = game_.board();
  const MoveList moves = legalMoves(board);
  print(stdout, "#moves = %i\n", static_cast<int>(moves.size()));
  for (const Move move : moves) {
    print(stdout, "%s ", moveToText(move).c_str());
  }
  print(stdout, "\n");
}

void Console::showEvaluation(const RefString& /*arguments*/) {
  Board board;
  board.copyFrom(game_.board());
  Evaluator evaluator(board);
  evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
  printBreakdown(evaluator.breakdown(), stdout);
}

void Console::search(const RefString& arguments) {
  if (useBook_ && !(arguments == "nobook") && showBookMove()) return;
  control_.stopSearch();
  if (clearTable_ && !(arguments == "tt")) {
    control_.search().tt().clear();
  } else {
    print(stdout, "tt not cleared\n");
  }
  if (async_) {
    control_.startSearch(game_.board(), limits_, observer_);
  } else {
    control_.searchAndWait(game_.board(), limits_, observer_);
  }
}

void Console::limitDepth(const RefString& arguments) {
  const std::optional<int> depth = readDepth(arguments, 0);
  if (!depth) return reportIllegal(arguments);
  limits_.depth.reset();
  if (*depth > 0) limits_.depth = *depth;
}

void Console::limitTime(const RefString& arguments) {
  constexpr int MILLIS = 1000;
  std::string_view text = arguments.view();
  std::string_view probe = text;
  if (!arguments.empty() && !takeNumber(probe)) return reportIllegal(arguments);
  const std::optional<int> time = takeCount(text, MILLIS);
  const std::optional<int> moves = takeCount(text, 1);
  const std::optional<int> increment = takeCount(text, MILLIS);
  if (!time || !moves || !increment) return reportIllegal(arguments);
  if (*time != 0) {
    limits_.moveTime.reset();
    limits_.game.reset();
    if (*moves == 0) {
      limits_.moveTime = *time;
    } else {
      limits_.game = {.movesToGo = *moves, .remaining = *time, .increment = *increment};
    }
  }
  const TimeBudgets budgets(limits_);
  print(stdout, "millis=%u\n", budgets[TimeBudgets::NORMAL]);
  print(stdout, "  easy=%u\n", budgets[TimeBudgets::EASY]);
  print(stdout, "  next=%u\n", budgets[TimeBudgets::ITERATION]);
  print(stdout, "  hi  =%u\n", budgets[TimeBudgets::EXTENDED]);
  print(stdout, "  lo  =%u\n", budgets[TimeBudgets::PANIC]);
}

}  // namespace ombrin
