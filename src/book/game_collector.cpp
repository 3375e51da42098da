#include "book/game_collector.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "board/display.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/plain_notation.h"
#include "book/book_key.h"
#include "util/print.h"

namespace ombrin {

namespace {

// The factors of both players, added up.
double gameWeight(const PgnGame& game) {
  constexpr auto factor = [](int elo) { return std::exp2((elo - 2400.0) / 70); };
  return factor(game.whiteElo) + factor(game.blackElo);
}

BookTable::Outcome outcomeForWhite(int result) {
  if (result == WHITE_WON) return BookTable::WIN;
  return result == BLACK_WON ? BookTable::LOSS : BookTable::DRAW;
}

BookTable::Outcome opposite(BookTable::Outcome outcome) {
  return static_cast<BookTable::Outcome>(BookTable::LOSS - outcome);
}

float weightOf(BookTable::Outcome outcome, double gameWeight) {
  if (outcome == BookTable::LOSS) return 0;
  return static_cast<float>(outcome == BookTable::WIN ? gameWeight : gameWeight / 2);
}

bool report(const Board& board, const char* problem, std::string_view text) {
  printBoard(board, stdout);
  print(stdout, "%s: %.*s\n", problem, static_cast<int>(text.size()), text.data());
  return false;
}

}  // namespace

GameCollector::GameCollector(BookTable& table, const BuildSettings& settings,
                             BuildCounters& counters)
    : table_(table), settings_(settings), counters_(counters) {
  setFen(start_, START_FEN);
}

bool GameCollector::addGame(const PgnGame& game) {
  if (game.result == NO_RESULT) {
    ++counters_.withoutResult;
    return true;
  }
  if (!game.warning.empty()) {
    print(stdout, "Warning: %s\n", game.warning.c_str());
    ++counters_.errors;
    return false;
  }
  if (!isWanted(game)) return true;
  if (!game.fen.empty()) {
    ++counters_.errors;
    return false;
  }
  const bool complete = replay(game);
  enterMoves();
  if (complete) ++counters_.used;
  return complete;
}

bool GameCollector::isWanted(const PgnGame& game) {
  const std::int64_t whiteElo = game.whiteElo;
  const std::int64_t blackElo = game.blackElo;
  std::int64_t* unwanted = nullptr;
  if (static_cast<std::int64_t>(game.moves.size()) < settings_.minply) {
    unwanted = &counters_.belowMinply;
  } else if (settings_.minelo != 0 && std::max(whiteElo, blackElo) < settings_.minelo) {
    unwanted = &counters_.belowMinelo;
  } else if (settings_.maxelodelta != 0 && std::abs(whiteElo - blackElo) > settings_.maxelodelta) {
    unwanted = &counters_.aboveMaxelodelta;
  }
  if (unwanted != nullptr) ++*unwanted;
  return unwanted == nullptr;
}

// False when a move cannot be played.
bool GameCollector::replay(const PgnGame& game) {
  Board& board = table_.board();
  board.copyFrom(start_);
  entered_.clear();
  const double weight = gameWeight(game);
  BookTable::Outcome outcome = outcomeForWhite(game.result);
  const std::size_t plies = std::min(game.moves.size(), static_cast<std::size_t>(settings_.maxply));
  for (std::size_t ply = 0; ply < plies; ++ply) {
    const std::uint64_t key = bookKey(board);
    table_.prefetch(key);
    board.makeRoom();
    Move move = findPlainMove(board, game.moves[ply]);
    if (!move) move = parseMove(board, game.moves[ply]);
    if (!move) {
      ++counters_.errors;
      return report(board, "illegal move", game.moves[ply]);
    }
    const Move made = makeMove(board, move);
    if (!made) return report(board, "move not accepted", game.moves[ply]);
    // A plain move learns only now whether it gives check, and the next move depends on that.
    board.moveHistory[board.ply - 1] = made;
    if (made.isPromotion() && made.promotion() != QUEEN) return true;
    const int blackMove = static_cast<int>(ply % 2) << 7;
    entered_.push_back({key, static_cast<std::uint8_t>(made.from().number() | blackMove),
                        static_cast<std::uint8_t>(made.to().number()), outcome,
                        weightOf(outcome, weight)});
    outcome = opposite(outcome);
  }
  return true;
}

// All at once, so that the table's memory had time to arrive.
void GameCollector::enterMoves() {
  for (const Entered& move : entered_) {
    if (!table_.add(move.key, move.from, move.to, move.outcome, move.weight)) break;
    ++counters_.movesEntered;
  }
  entered_.clear();
}

}  // namespace ombrin
