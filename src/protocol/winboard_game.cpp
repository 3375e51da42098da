// The part of the WinBoard front-end that keeps the game and thinks about it.
#include <utility>

#include "board/display.h"
#include "board/notation.h"
#include "platform/tick.h"
#include "protocol/winboard_front_end.h"
#include "protocol/winboard_lines.h"
#include "util/log.h"

namespace ombrin {

// ---- the game ----

Move WinboardFrontEnd::onGameBoard(Move move) {
  return move.isNull() ? move : parseMove(game_.board(), moveToCoordinates(move));
}

void WinboardFrontEnd::takeBackForUser() {
  if (!game_.takeBack()) send("tellusererror cannot undo\n");
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
  } else if (engineSide_ == static_cast<int>(game_.board().side)) {
    if (playBookMove()) {
      note("think: bookmove");
    } else {
      startThinking(caller, WinboardStatus::SEARCHING, false);
    }
  } else if (!ponder_) {
    note("think: pondering disabled");
  } else {
    note("think: ponder");
    if (game_.playPonderMove(onGameBoard(control_.search().report().ponderMove()))) {
      startThinking(caller, WinboardStatus::PONDERING, true);
    } else {
      note("think: no move to ponder");
    }
  }
}

bool WinboardFrontEnd::playBookMove() {
  if (game_.hasLeftBook()) return false;
  const Move move = picker_.pick();
  if (!game_.play(move).isNull()) {
    send("move %s\n", moveToCoordinates(move).c_str());
    return true;
  }
  game_.leaveBook();
  note("WB: First search out of book is at %u ply\n", game_.firstPlyOutOfBook());
  return false;
}

void WinboardFrontEnd::startThinking(Caller caller, WinboardStatus status, bool infinite) {
  const WinboardStatus old = status_.replace(status);
  if (old != WinboardStatus::IDLE) {
    note("Expected current status==IDLE, got %i\n", static_cast<int>(old));
  }
  searched_ = game_.place();
  ponderedMove_ = game_.ponderMove();
  limits_ = limits(infinite);
  throttle_.reset();
  searchStart_ = tickCount();
  {
    const std::lock_guard lock(progressLock_);
    progress_ = {};
  }
  note("go()...");
  if (caller == Caller::SEARCH_THREAD) {
    control_.searchNext(game_.board(), limits_, *this);
  } else {
    control_.startSearch(game_.board(), limits_, *this);
  }
  note("go() ok");
}

void WinboardFrontEnd::userMove(const RefString& text) {
  const Move ponderMove = game_.ponderMove();
  Move move;
  if (!ponderMove.isNull()) {
    move = game_.parseBeforePonderMove(text.view());
    if (!move.isNull() && move.isSameAs(ponderMove)) return ponderhit();
    stop();
  } else {
    stop();
    move = parseMove(game_.board(), text.view());
  }
  if (!game_.play(move).isNull()) {
    printBoard(game_.board(), logFile);
    think(Caller::COMMAND_THREAD);
  } else {
    send("Illegal move: %s\n", text.c_str());
    restartAnalysis();
  }
}

void WinboardFrontEnd::ponderhit() {
  note("ponderhit");
  game_.confirmPonderMove();
  if (status_.replace(WinboardStatus::SEARCHING) == WinboardStatus::IDLE) {
    status_.replace(WinboardStatus::IDLE);
    note("pondering already finished!");
    control_.stopSearch();
    answer(Caller::COMMAND_THREAD, control_.search().report());
    return;
  }
  limits_.game->remaining = millis_;
  limits_.game->reserve = settings_.timeGap.value_or(defaultReserve(millis_));
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
  } else if (searched_ != game_.place()) {
    note("finished(): another position has been set up meanwhile");
  } else {
    answer(Caller::SEARCH_THREAD, report);
    note("finished() ok");
  }
}

void WinboardFrontEnd::answer(Caller caller, const SearchReport& report) {
  const Color side = game_.board().side;
  if (report.bestMove.isNull()) {
    if (report.score == DRAW) {
      send("1/2-1/2 {Stalemate}\n");
    } else {
      announceWin(~side);
    }
    return;
  }
  const Move move = onGameBoard(report.bestMove);
  if (game_.play(move).isNull()) return;
  lastAnswer_ = {game_.place(), report.ponderMove()};
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
  send("%s\n", winboardThinkingLine(report, pondering ? ponderedMove_ : NULL_MOVE).c_str());
}

}  // namespace ombrin
