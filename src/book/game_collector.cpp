#include "book/game_collector.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/plain_notation.h"
#include "book/filed_move.h"
#include "book/game_rules.h"
#include "book/move_problem.h"

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

// "12. Nf3", "12... Nf6".
std::string numbered(Color first, std::size_t ply, std::string_view text) {
  const std::size_t fromWhite = ply + static_cast<std::size_t>(first);
  std::string move = std::to_string(fromWhite / 2 + 1);
  move += fromWhite % 2 == 0 ? ". " : "... ";
  return move += text;
}

}  // namespace

GameCollector::GameCollector(BookTable& table, BookKind kind, const BuildSettings& settings,
                             BuildCounters& counters)
    : table_(table), kind_(kind), settings_(settings), counters_(counters) {
  setFen(start_, START_FEN);
}

bool GameCollector::addGame(const PgnGame& game) {
  if (game.result == NO_RESULT) {
    ++counters_.withoutResult;
    return true;
  }
  if (!game.warning.empty()) return fail(GameProblem::UNCLEAR, "", game.warning);
  if (!hasUsualRules(game)) {
    ++counters_.otherVariants;
    return true;
  }
  if (!isWanted(game)) return true;
  Board& board = table_.board();
  if (game.fen.empty()) {
    board.copyFrom(start_);
  } else if (const FenResult set = setFen(board, game.fen); !set) {
    return fail(GameProblem::REFUSED_POSITION, "", set.error + ": " + game.fen);
  } else if (hasOtherCastling(game.fen, board)) {
    ++counters_.otherVariants;
    return true;
  }
  const bool complete = replay(game);
  enterMoves();
  if (complete && !isFull_) ++counters_.used;
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
    if (whiteElo == 0 && blackElo == 0) ++counters_.unrated;
  } else if (settings_.maxelodelta != 0 && std::abs(whiteElo - blackElo) > settings_.maxelodelta) {
    unwanted = &counters_.aboveMaxelodelta;
  }
  if (unwanted != nullptr) ++*unwanted;
  return unwanted == nullptr;
}

// From the position on the board. False when a move cannot be played.
bool GameCollector::replay(const PgnGame& game) {
  Board& board = table_.board();
  entered_.clear();
  const double weight = gameWeight(game);
  const Color first = board.side;
  BookTable::Outcome outcome = outcomeForWhite(game.result);
  if (first == BLACK) outcome = opposite(outcome);
  const std::size_t plies = std::min(game.moves.size(), static_cast<std::size_t>(settings_.maxply));
  for (std::size_t ply = 0; ply < plies; ++ply) {
    board.makeRoom();
    const std::string_view text = game.moves[ply];
    const Move move = findMove(text);
    const BookEntry filed = filedMove(board, move, kind_);
    table_.prefetch(filed.key);
    const Move made = move ? makeMove(board, move) : NULL_MOVE;
    if (!made) {
      return fail(GameProblem::ILLEGAL_MOVE, numbered(first, ply, text), moveProblem(board, text));
    }
    // A plain move learns only now whether it gives check, and the next move depends on that.
    board.moveHistory[board.ply - 1] = made;
    if (made.isPromotion() && made.promotion() != QUEEN) return true;
    entered_.push_back({filed, outcome, weightOf(outcome, weight)});
    outcome = opposite(outcome);
  }
  return true;
}

Move GameCollector::findMove(std::string_view text) {
  Board& board = table_.board();
  const Move plain = findPlainMove(board, text);
  if (plain || hasForeignCharacter(text)) return plain;
  return parseMove(board, text);
}

bool GameCollector::fail(GameProblem::Kind kind, std::string move, std::string reason) {
  ++counters_.errors;
  problem_ = {kind, std::move(move), std::move(reason)};
  return false;
}

// All at once, so that the table's memory had time to arrive, and that a game for which there is no
// room is not half counted.
void GameCollector::enterMoves() {
  isFull_ = !table_.makeRoomFor(entered_.size());
  if (isFull_) return;
  for (const Entered& entered : entered_) table_.add(entered.move, entered.outcome, entered.weight);
  counters_.movesEntered += static_cast<std::int64_t>(entered_.size());
}

}  // namespace ombrin
