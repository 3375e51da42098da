#pragma once

#include <span>

#include "board/board.h"
#include "search/search_thread.h"

namespace ombrin {

// Hands out the moves of one node in the order in which they are worth searching, stage by stage,
// so that what a refutation makes superfluous is never generated. Moves may be only pseudo-legal:
// ask uncovers() of each that is not an evasion, and makeMove.
//
// Works in the thread's move room of its ply, so a ply has one picker at a time.
class MovePicker {
 public:
  // The main search, not in check: everything but `hashMove`. The threat is what the opponent would
  // play after a null move, null when not known.
  static MovePicker main(SearchThread& thread, int ply, Move hashMove, Move threat);
  // All moves out of the check that `lastMove` gives, the hash move first.
  static MovePicker evasions(SearchThread& thread, int ply, Move lastMove, Move hashMove);
  // Quiescence: captures that lose nothing, leaving out those too small to matter, then quiet
  // checks if `checks` is set. A capture is too small when 100 times its victim's value is below a
  // positive threshold, unless it gives check and checks are wanted.
  static MovePicker quiescence(SearchThread& thread, int ply, int threshold, bool checks,
                               Move hashMove);
  // Quiescence: all moves, as they come.
  static MovePicker all(SearchThread& thread, int ply);

  // The next move, null when there are none left.
  Move next();
  // Asks the memory for the table's entries behind the move that comes after that one. For moves
  // that are searched: meanwhile they arrive.
  void prefetchNext() const;

  // Where the move that next() gave last comes from. Evasions are neither captures nor killers
  // here.
  bool isCapture() const { return stage_ == Stage::CAPTURES; }
  bool isKiller() const { return stage_ == Stage::KILLER1 || stage_ == Stage::KILLER2; }

  // Evasions, before the first next(): how many there are, and without those that neither capture
  // nor promote.
  int evasionCount() const { return static_cast<int>(evasionsEnd_ - room_.data()); }
  void dropQuietEvasions();
  // Quiescence: 100 times the value of the biggest victim that was left out, 0 when there was none.
  int largestPruned() const { return largestPruned_; }

 private:
  // What the moves at hand are; nextBatch() goes from each stage to the one behind it.
  enum class Stage {
    CAPTURES,
    KILLER1,
    KILLER2,
    QUIET,
    LOSING_CAPTURES,
    KING_MOVES,
    UNORDERED_EVASIONS,
    EVASIONS,
    QUIESCENCE,
    DISCOVERED_CHECKS,
    QUIET_CHECKS,
    ALL,
  };

  MovePicker(SearchThread& thread, int ply, Stage stage);

  bool nextBatch();
  bool killerBatch(Move killer);
  bool quietBatch();
  bool quietCheckBatch();
  void orderMainCaptures(Move* end);
  void orderEvasions();
  void orderQuiescence(Move* end, int threshold);
  void blankKillers();
  void promoteQuiet();

  SearchThread& thread_;
  const Board& board_;
  int ply_;
  std::span<Move, SearchThread::MOVE_ROOM> room_;
  Stage stage_;
  bool checks_ = false;
  int largestPruned_ = 0;
  Move excluded_;
  Move hashMove_;  // comes first
  Move threat_;
  Move* current_ = nullptr;
  Move* end_ = nullptr;
  Move* losing_ = nullptr;
  Move* losingEnd_ = nullptr;
  Move* evasionsEnd_ = nullptr;
};

}  // namespace ombrin
