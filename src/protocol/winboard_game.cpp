// The part of the WinBoard front-end that keeps the game and thinks about it.
#include <algorithm>
#include <utility>

#include "board/display.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "protocol/winboard_front_end.h"
#include "protocol/winboard_lines.h"
#include "util/log.h"

namespace ombrin {

// ---- the board ----

Move WinboardFrontEnd::onGameBoard(Move move) {
  return move.isNull() ? move : parseMove(control_.board(), moveToCoordinates(move));
}

bool WinboardFrontEnd::makeMoveOnBoard(Move move) {
  checkHistory();
  Board& board = control_.board();
  board.makeRoom();
  const PlyRecord record{board.save(), board.rootMove, board.droppedPlies};
  if (move.isNull() || control_.makeGameMove(move).isNull()) return false;
  history_.push_back(record);
  return true;
}

void WinboardFrontEnd::checkHistory() {
  if (settlements_ == control_.settlements()) return;
  settlements_ = control_.settlements();
  history_.clear();
  ponderMove_ = NULL_MOVE;
}

bool WinboardFrontEnd::takeBack() {
  checkHistory();
  Board& board = control_.board();
  if (board.ply == 0 || history_.empty()) return false;
  PlyRecord record = history_.back();
  history_.pop_back();
  // The board has forgotten moves since; what it remembers now starts that much later.
  const std::uint32_t dropped = board.droppedPlies - record.droppedPlies;
  record.saved.lastIrreversible -=
      static_cast<std::uint16_t>(std::min<std::uint32_t>(record.saved.lastIrreversible, dropped));
  const Move move = board.moveHistory[board.ply - 1];
  if (move.isNull()) {
    unmakeNullMove(board, record.saved);
  } else {
    unmakeMove(board, move, record.saved);
  }
  board.rootMove = record.rootMove;
  return true;
}

void WinboardFrontEnd::takeBackForUser() {
  if (!takeBack()) send("tellusererror cannot undo\n");
}

void WinboardFrontEnd::undo() {
  const bool searching = status_.current() != WinboardStatus::IDLE;
  if (searching) note("undo(): not IDLE!...stopping...");
  stop();
  if (searching) note("undo(): stopped...");
  takeBackForUser();
  restartAnalysis();
}

void WinboardFrontEnd::remove() {
  note("remove: stop()");
  stop();
  note("remove: undo1");
  takeBackForUser();
  note("remove: undo2");
  takeBackForUser();
  restartAnalysis();
}

// ---- thinking ----

void WinboardFrontEnd::think(Caller caller) {
  note("think()");
  if (duringPonderhit_ && caller == Caller::SEARCH_THREAD) {
    thinkAfterPonderhit_ = true;
    return;
  }
  if (caller == Caller::COMMAND_THREAD) control_.stopSearch();
  if (paused_) {
    note("think: paused");
  } else if (engineSide_ == NO_SIDE && !analyze_) {
    note("think(): Not thinking: in force mode\n");
  } else if (analyze_) {
    note("think: analyze");
    startThinking(caller, WinboardStatus::SEARCHING, true);
  } else if (engineSide_ == static_cast<int>(control_.board().side)) {
    if (playBookMove()) {
      note("think: bookmove");
    } else {
      startThinking(caller, WinboardStatus::SEARCHING, false);
    }
  } else if (!ponder_) {
    note("think: pondering disabled");
  } else {
    note("think: ponder");
    if (makePonderMove()) {
      startThinking(caller, WinboardStatus::PONDERING, true);
    } else {
      note("think: no move to ponder");
    }
  }
}

bool WinboardFrontEnd::playBookMove() {
  if (bookExit_.known()) return false;
  const Move move = picker_.pick();
  if (makeMoveOnBoard(move)) {
    send("move %s\n", moveToCoordinates(move).c_str());
    return true;
  }
  bookExit_.record(control_.board());
  note("WB: First search out of book is at %u ply\n", bookExit_.firstOutOfBookPly());
  return false;
}

bool WinboardFrontEnd::makePonderMove() {
  const Move move = onGameBoard(control_.search().report().ponderMove());
  if (!makeMoveOnBoard(move)) return false;
  ponderMove_ = move;
  return true;
}

void WinboardFrontEnd::startThinking(Caller caller, WinboardStatus status, bool infinite) {
  const WinboardStatus old = status_.replace(status);
  if (old != WinboardStatus::IDLE) {
    note("Expected current status==IDLE, got %i\n", static_cast<int>(old));
  }
  checkHistory();
  limits_ = limits(infinite);
  throttle_.reset();
  note("go()...");
  if (caller == Caller::SEARCH_THREAD) {
    control_.searchNext(limits_, *this);
  } else {
    control_.startSearch(limits_, *this);
  }
  note("go() ok");
}

void WinboardFrontEnd::userMove() {
  checkHistory();
  const RefString text = tokens_.rest();
  const Move ponderMove = ponderMove_;
  Move move;
  if (!ponderMove.isNull()) {
    move = readOpponentMove(text.view());
    if (!move.isNull() && move.isSameAs(ponderMove)) return ponderhit();
    stop();
  } else {
    stop();
    move = parseMove(control_.board(), text.view());
  }
  if (makeMoveOnBoard(move)) {
    printBoard(control_.board(), logFile);
    think(Caller::COMMAND_THREAD);
  } else {
    send("Illegal Move: %s\n", text.c_str());
    restartAnalysis();
  }
}

Move WinboardFrontEnd::readOpponentMove(std::string_view text) {
  Board before;
  before.copyFrom(control_.board());
  unmakeMove(before, before.moveHistory[before.ply - 1], history_.back().saved);
  before.rootMove = history_.back().rootMove;
  return parseMove(before, text);
}

void WinboardFrontEnd::ponderhit() {
  note("ponderhit");
  ponderMove_ = NULL_MOVE;
  if (status_.replace(WinboardStatus::SEARCHING) == WinboardStatus::IDLE) {
    status_.replace(WinboardStatus::IDLE);
    note("pondering already finished!");
    control_.stopSearch();
    answer(Caller::COMMAND_THREAD, control_.search().report());
    return;
  }
  limits_.game->remaining = millis_;
  note("ponderhit: adjusted nominal search time is %3.2f seconds\n",
       TimeBudgets(limits_).nominal() / 1000.0);
  duringPonderhit_ = true;
  control_.ponderhit(limits_);
  duringPonderhit_ = false;
  if (std::exchange(thinkAfterPonderhit_, false)) think(Caller::COMMAND_THREAD);
}

// ---- the search's end and progress ----

void WinboardFrontEnd::finished(const SearchReport& report) {
  note("finished()...");
  const auto lock = control_.lockGame();
  const WinboardStatus old = status_.replace(WinboardStatus::IDLE);
  if (old == WinboardStatus::PONDERING) {
    note("finished(): pondering done, do nothing");
  } else if (old == WinboardStatus::IDLE) {
    note("finished(): already idle, do nothing");
  } else if (analyze_) {
    note("finished(): analysis mode, do nothing\n");
  } else if (settlements_ != control_.settlements()) {
    note("finished(): another position has been set up meanwhile");
  } else {
    answer(Caller::SEARCH_THREAD, report);
    note("finished() ok");
  }
}

void WinboardFrontEnd::answer(Caller caller, const SearchReport& report) {
  const Color side = control_.board().side;
  if (report.bestMove.isNull()) {
    if (report.score == DRAW) {
      send("1/2-1/2 {Stalemate}\n");
    } else {
      announceWin(~side);
    }
    return;
  }
  const Move move = onGameBoard(report.bestMove);
  if (!makeMoveOnBoard(move)) return;
  send("move %s\n", moveToCoordinates(move).c_str());
  if (report.score >= Score::mateIn(1)) {
    announceWin(side);
  } else {
    note("finished(): think again\n");
    think(caller);
  }
}

void WinboardFrontEnd::announceWin(Color winner) {
  if (winner == WHITE) {
    send("1-0 {White mates}\n");
  } else {
    send("0-1 {Black mates}\n");
  }
}

void WinboardFrontEnd::reportBestLine(const SearchReport& report) {
  if (!post_ || !throttle_.admitBestLine(report)) return;
  const bool pondering = status_.current() == WinboardStatus::PONDERING;
  const Move ponderMove = pondering ? ponderMove_.load() : NULL_MOVE;
  send("%s\n", winboardThinkingLine(report, ponderMove).c_str());
}

}  // namespace ombrin
