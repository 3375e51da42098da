// The part of the UCI front-end that deals with the game: "position" and "go".
#include <algorithm>
#include <limits>

#include "board/display.h"
#include "board/fen.h"
#include "board/notation.h"
#include "protocol/numbers.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_log.h"
#include "util/print.h"

namespace ombrin {

void UciFrontEnd::position() {
  trace("position()...");
  const RefString first = tokens_.nextToken();
  stopForPosition(status_.replace(UciStatus::POSITION));
  if (setUp(first) == "moves" && !control_.positionRefused()) playMoves();
  control_.settleGame();
  printBoard(control_.board(), logFile);
  trace("position() ok");
}

void UciFrontEnd::stopForPosition(UciStatus status) {
  switch (status) {
    case UciStatus::IDLE:
      break;
    case UciStatus::POSITION:
      logInfo(UCI_LOG, "uci: 2x position?\n");
      break;
    case UciStatus::SEARCHING:
    case UciStatus::PONDERING:
      print(stderr, "uci::position(): search still running? status=%i\n", static_cast<int>(status));
      trace("position: not stopped? stopping!...");
      control_.stopSearch();
      trace("position: stopped.");
      break;
  }
}

RefString UciFrontEnd::setUp(RefString token) {
  if (token == "startpos") {
    control_.setPosition(START_FEN);
    return tokens_.nextToken();
  }
  if (!(token == "fen")) return token;
  std::string fen;
  token.clear();
  while (!tokens_.atEnd()) {
    token = tokens_.nextToken();
    if (token.empty() || token == "moves") break;
    fen += token.view();
    fen += ' ';
  }
  control_.setPosition(fen);
  return token;
}

void UciFrontEnd::playMoves() {
  bool passedBookExit = false;
  while (!tokens_.atEnd()) {
    const RefString token = tokens_.nextToken();
    if (token.empty()) break;
    if (token.view().front() == '.') {
      logInfo(UCI_LOG, "SKIP continuation move: %s\n", token.c_str());
      continue;
    }
    const Move move = parseMove(control_.board(), token.view());
    if (move.isNull()) {
      print(stderr, "WARNING invalid move from GUI: %s\n", token.c_str());
      break;
    }
    if (control_.makeGameMove(move).isNull()) {
      print(stderr, "illegal move: %s\n", token.c_str());
      break;
    }
    if (control_.board().hash == bookExit_.outOfBookHash()) passedBookExit = true;
  }
  // A game that does not pass the position in which the last one left the book is another game.
  if (!passedBookExit && bookExit_.known()) newGame();
}

void UciFrontEnd::go() {
  trace("go()...");
  const UciStatus found = status_.replace(UciStatus::IDLE);
  control_.stopSearch();  // a search that still runs answers first
  if (answerWithoutSearch()) return;
  leaveBook();
  const Limits limits = readLimits();
  if (found != UciStatus::POSITION) {
    print(stderr, "Expected current status==POSITION, got %i\n", static_cast<int>(found));
  }
  setClock(limits);
  throttle_.reset();
  status_.replace(limits.ponder ? UciStatus::PONDERING : UciStatus::SEARCHING);
  control_.startSearch(*this);
  trace("go() ok");
}

bool UciFrontEnd::answerWithoutSearch() {
  if (control_.positionRefused()) {
    print(stderr, "go(): the position was refused, there is nothing to search\n");
    sendBestMove(NULL_MOVE, NULL_MOVE);
    return true;
  }
  if (bookExit_.known() || !useBook_) return false;
  const Move move = picker_.pick();
  if (move.isNull()) return false;
  sendBestMove(move, NULL_MOVE);
  trace("go()...ok [book]");
  return true;
}

void UciFrontEnd::leaveBook() {
  if (bookExit_.known()) return;
  bookExit_.record(control_.board());
  logInfo(UCI_LOG, "Uci:First search out of book is at %u ply\n", bookExit_.firstOutOfBookPly());
}

UciFrontEnd::Limits UciFrontEnd::readLimits() {
  Limits limits;
  const struct {
    std::string_view word;
    std::int64_t* value;
  } numbers[] = {
      {"wtime", &limits.time[WHITE]},     {"btime", &limits.time[BLACK]},
      {"winc", &limits.increment[WHITE]}, {"binc", &limits.increment[BLACK]},
      {"movestogo", &limits.movesToGo},   {"depth", &limits.depth},
      {"nodes", &limits.nodes},           {"movetime", &limits.moveTime},
  };
  while (!tokens_.atEnd()) {
    const RefString word = tokens_.nextToken();
    for (const auto& [known, value] : numbers) {
      if (word == known) *value = numberToken().value_or(*value);
    }
    if (word == "movetime") limits.movesToGo = 1;
    if (word == "infinite" || word == "ponder") limits.infinite = true;
    if (word == "ponder") {
      limits.ponder = true;
      logInfo(UCI_LOG, "START pondering\n");
    }
  }
  return limits;
}

void UciFrontEnd::setClock(const Limits& limits) {
  const int depth = std::max(clampToInt(limits.depth), 0);
  const std::int64_t nodes = std::max<std::int64_t>(limits.nodes, 0);
  control_.search().maxDepth = depth;
  SearchClock& clock = control_.clock();
  clock.reset();
  clock.timeGap = 0;
  clock.setInfinite(limits.infinite);
  clock.nodeLimit = static_cast<std::uint64_t>(nodes);
  clock.depth = depth;

  const std::optional<int> movesOutOfBook = bookExit_.movesOutOfBook(control_.board());
  if (movesOutOfBook) logInfo(UCI_LOG, OUT_OF_BOOK, *movesOutOfBook);
  clock.movesOutOfBook = movesOutOfBook.value_or(0);

  const Color side = control_.board().side;
  const int movesToGo = clampToInt(limits.movesToGo);
  if (limits.moveTime >= 0) {
    const int moveTime = clampToInt(limits.moveTime);
    logInfo(UCI_LOG, "got hard moves/millis=%i/%i\n", movesToGo, moveTime);
    clock.setMoveTime(moveTime);
  } else if (limits.time[side] >= 0) {
    const int time = clampToInt(limits.time[side]);
    logInfo(UCI_LOG, "got wb moves/millis=%i/%i\n", movesToGo, time);
    clock.timeGap = settings_.timeGap;
    clock.setTimeControl(movesToGo, time, clampToInt(limits.increment[side]));
  } else if (depth == 0 && nodes == 0) {
    if (!limits.infinite) print(stderr, "go(): no time/depth/node limit\n");
    clock.setDefaults();
  } else {
    constexpr int UNLIMITED = std::numeric_limits<int>::max();
    clock.setMoveTime(UNLIMITED);
  }
  logInfo(UCI_LOG, "Nominal search time is %3.2f seconds, infinite=%i, nodes=%llu\n",
          clock.nominal() / 1000.0, clock.isInfinite() ? 1 : 0,
          static_cast<unsigned long long>(clock.nodeLimit));
}

std::optional<std::int64_t> UciFrontEnd::numberToken() {
  const RefString token = tokens_.nextToken();
  std::string_view text = token.view();
  return takeNumber(text);
}

}  // namespace ombrin
