#include "search/move_picker.h"

#include <algorithm>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/geometry.h"
#include "board/move_generation.h"
#include "search/search_state.h"

namespace ombrin {

namespace {

constexpr int HASH_MOVE_KEY = 0x7fffffff;
constexpr int LAST_CUT_KEY = 0x7f100;
constexpr int THREAT_CAPTURE_KEY = 999;

// Where a king in check would rather be: the corners first, the centre last. Half a board from the
// edge inwards; files a to h.
constexpr std::array<std::array<int, 8>, 4> KING_TABLE = {{
    {-1, 0, -3, -4, -4, -3, 0, -1},
    {-1, -2, -3, -6, -6, -3, -2, -1},
    {-6, -8, -10, -12, -12, -10, -8, -6},
    {-10, -12, -14, -16, -16, -14, -12, -10},
}};

constexpr int kingTable(Square square) {
  return KING_TABLE[std::min(square.rank(), 7 - square.rank())][square.file()];
}

// Does the square lie strictly between the ends of a line?
bool isBetween(Square square, Square from, Square to) {
  const Delta step = stepAlong(to - from);
  return isLine(to - from) && isLine(square - from) && stepAlong(square - from) == step &&
         kingDistance(from, square) < kingDistance(from, to);
}

// Would the piece attack the square from the move's destination if nothing else stood in the way?
bool couldAttack(const Board& board, Move move, Square target) {
  return (board.at(move.from()).kind() & attacksOver(target - move.to())) != 0;
}

// Does it attack the square from there?
bool willAttack(const Board& board, Move move, Square target) {
  return attacks(board, board.at(move.from()).kind(), move.to(), target);
}

// The keys of a list of moves, by position.
using Keys = std::array<int, SearchThread::MOVE_ROOM>;

// Highest key first; of equals, the one that came first.
void sortByKey(std::span<Move> moves, Keys& keys) {
  for (std::size_t i = 1; i < moves.size(); ++i) {
    const Move move = moves[i];
    const int key = keys[i];
    std::size_t place = i;
    for (; place > 0 && keys[place - 1] < key; --place) {
      moves[place] = moves[place - 1];
      keys[place] = keys[place - 1];
    }
    moves[place] = move;
    keys[place] = key;
  }
}

}  // namespace

MovePicker::MovePicker(SearchThread& thread, int ply, Stage stage)
    : thread_(thread),
      board_(thread.board),
      ply_(ply),
      room_(thread.moveRoom(ply)),
      stage_(stage),
      current_(room_.data()),
      end_(current_) {}

MovePicker MovePicker::main(SearchThread& thread, int ply, Move hashMove, Move threat) {
  MovePicker picker(thread, ply, Stage::CAPTURES);
  picker.excluded_ = hashMove;
  picker.threat_ = threat;
  picker.orderMainCaptures(genCaptures(picker.board_, picker.current_));
  return picker;
}

MovePicker MovePicker::evasions(SearchThread& thread, int ply, Move lastMove, Move hashMove) {
  MovePicker picker(thread, ply, Stage::UNORDERED_EVASIONS);
  picker.hashMove_ = hashMove;
  picker.evasionsEnd_ = genEvasions(picker.board_, picker.current_, lastMove);
  return picker;
}

MovePicker MovePicker::quiescence(SearchThread& thread, int ply, int threshold, bool checks,
                                  Move hashMove) {
  MovePicker picker(thread, ply, Stage::QUIESCENCE);
  picker.checks_ = checks;
  picker.hashMove_ = hashMove;
  picker.orderQuiescence(genCaptures(picker.board_, picker.current_), threshold);
  return picker;
}

MovePicker MovePicker::all(SearchThread& thread, int ply) {
  MovePicker picker(thread, ply, Stage::ALL);
  picker.end_ = genMoves(picker.board_, picker.current_);
  return picker;
}

// Captures of the threatening piece come first, losing ones go behind the quiet moves.
void MovePicker::orderMainCaptures(Move* end) {
  const Square king = board_.kingSquare(~board_.side);
  Keys keys;
  losing_ = losingEnd_ = end;
  end_ = current_;
  for (const Move move : std::span(current_, end)) {
    if (move.isSameAs(excluded_)) continue;
    const bool loses = losesMaterial(board_, board_.side, move);
    const bool takesThreat = threat_ && move.to() == threat_.from();
    if (loses && !takesThreat) {
      *losingEnd_++ = move;
      continue;
    }
    keys[end_ - current_] = takesThreat ? (loses ? 0 : THREAT_CAPTURE_KEY)
                                        : gainOf(move) + (couldAttack(board_, move, king) ? 1 : 0);
    *end_++ = move;
  }
  sortByKey({current_, end_}, keys);
}

void MovePicker::dropQuietEvasions() {
  evasionsEnd_ =
      std::remove_if(room_.data(), evasionsEnd_, [](Move move) { return move.isQuiet(); });
}

void MovePicker::orderEvasions() {
  const Square king = board_.kingSquare(board_.side);
  Keys keys;
  for (int i = 0; i < evasionCount(); ++i) {
    const Move move = current_[i];
    if (move.isSameAs(hashMove_)) {
      keys[i] = HASH_MOVE_KEY;
    } else if (move.from() == king) {
      keys[i] = 65536 * move.captured().value() + kingTable(move.to()) - kingTable(king);
    } else {
      keys[i] = 65536 * see(board_, board_.side, move) + 2;
    }
  }
  sortByKey({current_, end_}, keys);
}

void MovePicker::orderQuiescence(Move* end, int threshold) {
  const Color side = board_.side;
  const Square king = board_.kingSquare(~side);
  const Move lastCut = thread_.lastCut[ply_];
  Keys keys;
  for (const Move move : std::span(current_, end)) {
    const int victim = move.captured().value();
    int key = 0;
    if (hashMove_ && move.isSameAs(hashMove_)) {
      key = HASH_MOVE_KEY;
    } else if (discoversCheck(board_, king, move.from(), move.to())) {
      key = victim + 1;
    } else {
      if (threshold > 0 && !move.isPromotion() && 100 * victim < threshold &&
          !(checks_ && willAttack(board_, move, king))) {
        largestPruned_ = std::max(largestPruned_, 100 * victim);
        continue;
      }
      if (losesMaterial(board_, side, move)) continue;
      key = move.isSameAs(lastCut) ? LAST_CUT_KEY : gainOf(move);
    }
    keys[end_ - current_] = key;
    *end_++ = move;
  }
  sortByKey({current_, end_}, keys);
}

Move MovePicker::next() {
  do {
    while (current_ != end_) {
      const Move move = *current_++;
      if (move && !move.isSameAs(excluded_)) return move;
    }
  } while (nextBatch());
  return NULL_MOVE;
}

void MovePicker::prefetchNext() const {
  if (current_ != end_) thread_.state.tt.prefetchAfter(board_, *current_);
}

// Moves on to the next stage that has moves.
bool MovePicker::nextBatch() {
  switch (stage_) {
    case Stage::CAPTURES:
      stage_ = Stage::KILLER1;
      if (killerBatch(thread_.killers[ply_].first)) return true;
      [[fallthrough]];
    case Stage::KILLER1:
      stage_ = Stage::KILLER2;
      if (killerBatch(thread_.killers[ply_].second)) return true;
      [[fallthrough]];
    case Stage::KILLER2:
      stage_ = Stage::QUIET;
      if (quietBatch()) return true;
      [[fallthrough]];
    case Stage::QUIET:
      stage_ = Stage::LOSING_CAPTURES;
      current_ = losing_;
      end_ = losingEnd_;
      if (current_ != end_) return true;
      [[fallthrough]];
    case Stage::LOSING_CAPTURES:
      stage_ = Stage::KING_MOVES;
      current_ = room_.data();
      end_ = genKingQuiet(board_, current_);
      return current_ != end_;
    case Stage::UNORDERED_EVASIONS:
      stage_ = Stage::EVASIONS;
      end_ = evasionsEnd_;
      orderEvasions();
      return current_ != end_;
    case Stage::QUIESCENCE:
      if (!checks_) return false;
      stage_ = Stage::DISCOVERED_CHECKS;
      current_ = room_.data();
      end_ = genDiscoveredQuiet(board_, current_);
      if (current_ != end_) return true;
      [[fallthrough]];
    case Stage::DISCOVERED_CHECKS:
      stage_ = Stage::QUIET_CHECKS;
      return quietCheckBatch();
    case Stage::KING_MOVES:
    case Stage::EVASIONS:
    case Stage::QUIET_CHECKS:
    case Stage::ALL:
      return false;
  }
  return false;
}

bool MovePicker::killerBatch(Move killer) {
  if (!killer || !isMove(board_, killer, NULL_MOVE)) return false;
  current_ = room_.data();  // the captures before it are done with
  *current_ = killer;
  end_ = current_ + 1;
  return true;
}

bool MovePicker::quietBatch() {
  current_ = losingEnd_;
  end_ = genQuiet(board_, current_);
  blankKillers();
  current_ = std::find_if(current_, end_, [](Move move) { return !move.isNull(); });
  promoteQuiet();
  return current_ != end_;
}

// They had stages of their own. Their places stay in the list, and promoteQuiet() moves them about
// like the moves; next() passes over them.
void MovePicker::blankKillers() {
  const Killers& killers = thread_.killers[ply_];
  std::replace_if(
      current_, end_,
      [&killers](Move move) {
        return move.isSameAs(killers.first) || move.isSameAs(killers.second);
      },
      NULL_MOVE);
}

// Moves that answer the threat come first, killers of the same side at earlier plies next, and
// checks last.
void MovePicker::promoteQuiet() {
  Move* front = current_;
  if (threat_) {
    for (Move& move : std::span(front, end_)) {
      if ((move.from() == threat_.to() || isBetween(move.to(), threat_.from(), threat_.to())) &&
          !losesMaterial(board_, board_.side, move)) {
        std::swap(move, *front++);
      }
    }
  }
  for (int earlier = ply_ - 2; earlier >= std::max(ply_ - 4, 0); earlier -= 2) {
    const Killers& killers = thread_.killers[earlier];
    const Move mateKiller = thread_.mateKiller[earlier];
    for (Move& move : std::span(front, end_)) {
      if (move.isSameAs(killers.first) || move.isSameAs(killers.second) ||
          move.isSameAs(mateKiller)) {
        std::swap(move, *front++);
      }
    }
  }
  const Square king = board_.kingSquare(~board_.side);
  for (Move* unexamined = end_; front < unexamined;) {
    if (willAttack(board_, *front, king)) {
      std::swap(*front, *--unexamined);
    } else {
      ++front;
    }
  }
}

// The rest of the quiet checks; those that lose the piece are left out.
bool MovePicker::quietCheckBatch() {
  const Square king = board_.kingSquare(~board_.side);
  current_ = room_.data();
  end_ = current_;
  Keys keys;
  for (const Move move : std::span(current_, genQuietChecks(board_, current_))) {
    if (losesMaterial(board_, board_.side, move)) continue;
    const int approach = 2 * kingDistance(king, move.from()) - kingDistance(king, move.to());
    keys[end_ - current_] = approach * board_.at(move.from()).value() + (move.isXray() ? 10 : 0);
    *end_++ = move;
  }
  sortByKey({current_, end_}, keys);
  return current_ != end_;
}

}  // namespace ombrin
