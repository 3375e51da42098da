#pragma once

#include <span>

#include "board/board.h"
#include "board/score.h"
#include "search/search_thread.h"

namespace ombrin {

// Hands out the moves of one node in the order in which they are worth searching, stage by stage,
// so that what a refutation makes superfluous is never generated. Moves may be only pseudo-legal:
// ask uncovers() of each that is not an evasion, and makeMove. One of the start functions comes
// first.
//
// Works in the thread's move room of its ply, so a ply has one picker at a time.
class MovePicker {
 public:
  enum Stage {
    CAPTURES = 1,
    KILLER1,
    KILLER2,
    QUIET,
    LOSING_CAPTURES,
    KING_MOVES,
    DONE,
    EVASIONS,
    QUIESCENCE = 10,
    DISCOVERED_CHECKS,
    QUIET_CHECKS,
    QUIESCENCE_DONE,
  };

  MovePicker(SearchThread& thread, int ply)
      : thread_(thread), board_(thread.board), ply_(ply), room_(thread.moveRoom(ply)) {}

  // The main search, not in check: everything but `hashMove`. The threat is what the opponent would
  // play after a null move, null when not known.
  void startMain(Move hashMove, Move threat);

  // All moves out of the check that lastMove gives; orderEvasions() sorts them. Returns how
  // many there are.
  int startEvasions(Move lastMove);
  // Drops the evasions that neither capture nor promote and returns how many remain.
  int dropQuietEvasions();
  void orderEvasions(Move hashMove);

  // Quiescence: captures that lose nothing, leaving out those too small to matter. A capture is too
  // small when 100 times its victim's value is below a positive threshold, unless it gives check
  // and checks is set. Returns the largest of those values that was left out, 0 when none was.
  int startQuiescence(int threshold, bool checks, Move hashMove);
  // With captures done, quiet checks follow.
  void allowQuietChecks() { quietChecks_ = true; }

  // Quiescence: all legal moves, as they come.
  void startAll();

  // The next move, null when there are none left.
  Move next();
  // Where the move that next() gave last comes from.
  Stage stage() const { return stage_; }
  // Asks the memory for the table's entries behind the move that comes after that one. For moves
  // that are searched: meanwhile they arrive.
  void prefetchNext() const;

 private:
  bool nextBatch();
  bool killerBatch(Move killer);
  bool quietBatch();
  bool quietCheckBatch();
  void orderMainCaptures(Move* end);
  void blankKillers();
  void promoteQuiet();

  SearchThread& thread_;
  Board& board_;
  int ply_;
  std::span<Move, SearchThread::MOVE_ROOM> room_;
  Stage stage_ = DONE;
  bool quietChecks_ = false;
  Move hashMove_;  // left out
  Move threat_;
  Move* current_ = nullptr;
  Move* end_ = nullptr;
  Move* losing_ = nullptr;
  Move* losingEnd_ = nullptr;
};

}  // namespace ombrin
