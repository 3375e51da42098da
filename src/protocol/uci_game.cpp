// The part of the UCI front-end that deals with the game: "position" and "go".
#include "board/display.h"
#include "board/fen.h"
#include "board/notation.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_log.h"
#include "util/print.h"
#include "util/scan.h"

namespace ombrin {

void UciFrontEnd::position() {
  trace("position()...");
  const RefString first = tokens_.nextToken();
  stopForPosition(status_.replace(UciStatus::POSITION));
  if (setUp(first) == "moves" && !game_.wasRefused()) playMoves();
  game_.compactPieces();
  printBoard(game_.board(), logFile);
  trace("position() ok");
}

void UciFrontEnd::stopForPosition(UciStatus status) {
  switch (status) {
    case UciStatus::IDLE:
    case UciStatus::HELD_BACK:
      break;
    case UciStatus::POSITION:
      logInfo(UCI_LOG, "uci: 2x position?\n");
      break;
    case UciStatus::SEARCHING:
    case UciStatus::PONDERING:
    case UciStatus::ANALYZING:
      print(stderr, "uci::position(): search still running? status=%i\n", static_cast<int>(status));
      trace("position: not stopped? stopping!...");
      control_.stopSearch();
      trace("position: stopped.");
      break;
  }
}

RefString UciFrontEnd::setUp(RefString token) {
  if (token == "startpos") {
    game_.setUp(START_FEN);
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
  if (const FenResult result = game_.setUp(fen); !result) {
    send((active_ ? "info string " : "") + result.error + '\n');
  }
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
    const Move move = parseMove(game_.board(), token.view());
    if (move.isNull()) {
      print(stderr, "WARNING invalid move from GUI: %s\n", token.c_str());
      break;
    }
    if (game_.play(move).isNull()) {
      print(stderr, "illegal move: %s\n", token.c_str());
      break;
    }
    if (game_.isAtBookExit()) passedBookExit = true;
  }
  // A game that does not pass the position in which the last one left the book is another game.
  if (!passedBookExit && game_.hasLeftBook()) newGame();
}

void UciFrontEnd::go() {
  trace("go()...");
  const UciStatus found = status_.replace(UciStatus::IDLE);
  control_.stopSearch();  // a search that still runs answers first
  UciStatus status = UciStatus::SEARCHING;
  limits_ = readLimits(status);
  if (game_.wasRefused()) {
    print(stderr, "go(): the position was refused, there is nothing to search\n");
    sendBestMove(NULL_MOVE, NULL_MOVE);
    return;
  }
  if (isPlaying(limits_) && answerFromBook()) return;
  completeLimits(limits_);
  if (found != UciStatus::POSITION) {
    print(stderr, "Expected current status==POSITION, got %i\n", static_cast<int>(found));
  }
  throttle_.reset();
  status_.replace(status);
  control_.startSearch(game_.board(), limits_, *this);
  trace("go() ok");
}

// Is the engine to play a move by a clock? Only then may the book answer, and the game leave it.
bool UciFrontEnd::isPlaying(const SearchLimits& limits) const {
  return (limits.game || limits.moveTime) && !limits.infinite && !limits.depth && !limits.nodes &&
         !isAnalysis_;
}

bool UciFrontEnd::answerFromBook() {
  if (game_.hasLeftBook()) return false;
  const Move move = useBook_ ? picker_.pick() : NULL_MOVE;
  if (move.isNull()) {
    game_.leaveBook();
    logInfo(UCI_LOG, "Uci:First search out of book is at %u ply\n", game_.firstPlyOutOfBook());
    return false;
  }
  sendBestMove(move, NULL_MOVE);
  trace("go()...ok [book]");
  return true;
}

SearchLimits UciFrontEnd::readLimits(UciStatus& status) {
  std::int64_t time[2] = {-1, -1};
  std::int64_t increment[2] = {0, 0};
  std::int64_t movesToGo = 0;
  std::int64_t depth = 0;
  std::int64_t nodes = 0;
  std::int64_t moveTime = -1;
  const struct {
    std::string_view word;
    std::int64_t* value;
  } numbers[] = {
      {"wtime", &time[WHITE]},     {"btime", &time[BLACK]},   {"winc", &increment[WHITE]},
      {"binc", &increment[BLACK]}, {"movestogo", &movesToGo}, {"depth", &depth},
      {"nodes", &nodes},           {"movetime", &moveTime},
  };
  SearchLimits limits;
  while (!tokens_.atEnd()) {
    const RefString word = tokens_.nextToken();
    for (const auto& [known, value] : numbers) {
      if (word == known) *value = numberToken().value_or(*value);
    }
    if (word == "movetime") movesToGo = 1;
    if (word == "infinite" || word == "ponder") limits.infinite = true;
    if (word == "infinite" && status == UciStatus::SEARCHING) status = UciStatus::ANALYZING;
    if (word == "ponder") {
      status = UciStatus::PONDERING;
      logInfo(UCI_LOG, "START pondering\n");
    }
  }
  const Color side = game_.board().side;
  if (depth > 0) limits.depth = clampToInt(depth);
  if (nodes > 0) limits.nodes = static_cast<std::uint64_t>(nodes);
  if (moveTime >= 0) limits.moveTime = clampToInt(moveTime);
  if (time[side] >= 0) {
    limits.game = {.movesToGo = clampToInt(movesToGo),
                   .remaining = clampToInt(time[side]),
                   .increment = clampToInt(increment[side]),
                   .reserve = reserve(clampToInt(time[side]))};
  }
  if (limits.moveTime) {
    logInfo(UCI_LOG, "got hard moves/millis=%i/%i\n", clampToInt(movesToGo), *limits.moveTime);
  } else if (limits.game) {
    logInfo(UCI_LOG, "got wb moves/millis=%i/%i\n", clampToInt(movesToGo), limits.game->remaining);
  }
  return limits;
}

int UciFrontEnd::reserve(int remaining) const {
  if (moveOverhead_ > 0) return moveOverhead_;
  return settings_.timeGap.value_or(defaultReserve(remaining));
}

void UciFrontEnd::completeLimits(SearchLimits& limits) {
  limits.canPonder = canPonder_;
  const std::optional<int> movesOutOfBook = game_.movesOutOfBook();
  if (movesOutOfBook) logInfo(UCI_LOG, "out of book=%i\n", *movesOutOfBook);
  limits.movesOutOfBook = movesOutOfBook.value_or(0);
  if (!limits.moveTime && !limits.game && !limits.depth && !limits.nodes) {
    if (!limits.infinite) print(stderr, "go(): no time/depth/node limit\n");
    limits.moveTime = DEFAULT_MOVE_TIME;
  }
  logInfo(UCI_LOG, "Nominal search time is %3.2f seconds, infinite=%i, nodes=%llu\n",
          TimeBudgets(limits).nominal() / 1000.0, limits.infinite ? 1 : 0,
          static_cast<unsigned long long>(limits.nodes.value_or(0)));
}

std::optional<std::int64_t> UciFrontEnd::numberToken() {
  const RefString token = tokens_.nextToken();
  std::string_view text = token.view();
  return takeNumber(text);
}

}  // namespace ombrin
