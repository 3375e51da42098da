// The part of the UCI front-end that reports on a search. The observer's operations come on the
// thread that searches.
#include "board/notation.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_lines.h"
#include "protocol/uci_log.h"
#include "util/format.h"
#include "util/print.h"

namespace ombrin {

void UciFrontEnd::finished(const SearchReport& report) {
  trace("finished()...");
  const auto isUnheard = [](UciStatus status) {
    return status == UciStatus::PONDERING || status == UciStatus::ANALYZING;
  };
  const UciStatus found = status_.change(
      [&](UciStatus status) { return isUnheard(status) ? UciStatus::HELD_BACK : UciStatus::IDLE; });
  if (isUnheard(found)) {
    logInfo(UCI_LOG, "Uci:finish() delay sending bestmove, status is still 'pondering'\n");
  } else {
    sendInfo(report);
    sendBestMove(report.bestMove, report.ponderMove());
  }
  trace("finished() ok");
}

void UciFrontEnd::reportBestLine(const SearchReport& report) {
  if (throttle_.admitBestLine(report)) sendInfo(report);
}

void UciFrontEnd::reportCurrentMove(const RootMoveReport& report) {
  std::string text;
  if (report.number == 0) append(text, "info depth %i\n", report.depth);
  if (throttle_.admitCurrentMove(report)) text += uciCurrentMoveLine(report);
  if (!text.empty()) send(text);
}

void UciFrontEnd::reportHeldBack() {
  control_.stopSearch();  // the results belong to the search thread until it is idle
  const SearchReport report = control_.search().report();
  sendInfo(report);
  sendBestMove(report.bestMove, report.ponderMove());
}

void UciFrontEnd::sendInfo(const SearchReport& report) {
  send(uciInfoLine(report));
}

void UciFrontEnd::sendBestMove(Move bestMove, Move ponderMove) {
  send(uciBestMoveLine(bestMove, ponderMove));
  logLine("<--bestmove ", moveToText(bestMove).c_str());
  if (!ponderMove.isNull()) logLine("<--ponder ", moveToText(ponderMove).c_str());
  if (bestMove.isNull()) print(stderr, "No move generated! bm=%x\n", bestMove.word());
}

}  // namespace ombrin
