// The part of the UCI front-end that reports on a search. The observer's operations come on the
// thread that searches.
#include "board/notation.h"
#include "protocol/append.h"
#include "protocol/uci_front_end.h"
#include "protocol/uci_lines.h"
#include "protocol/uci_log.h"
#include "util/print.h"

namespace ombrin {

void UciFrontEnd::finished(int depth, Score score, Move /*bestMove*/) {
  trace("finished()...");
  if (status_.replace(UciStatus::IDLE) == UciStatus::PONDERING) {
    logInfo(UCI_LOG, "Uci:finish() delay sending bestmove, status is still 'pondering'\n");
  } else {
    sendInfo(depth, score);
    sendBestMove(control_.search().bestMove(), control_.search().ponderMove());
  }
  trace("finished() ok");
}

void UciFrontEnd::reportIteration(int depth, Score score, Move bestMove) {
  if (throttle_.admitIteration(depth, score, bestMove, control_.clock().elapsed())) {
    sendInfo(depth, score);
  }
}

void UciFrontEnd::reportCurrentMove(int depth, int moveNumber, Move move) {
  std::string text;
  if (moveNumber == 0) append(text, "info depth %i\n", depth);
  const std::uint64_t elapsed = control_.clock().elapsed();
  if (throttle_.admitCurrentMove(moveNumber, elapsed)) {
    text += uciCurrentMoveLine(move, moveNumber, {elapsed, control_.search().nodes()},
                               control_.search().hashFull());
  }
  if (!text.empty()) send(text);
}

void UciFrontEnd::reportResult(bool withPonderMove) {
  control_.stopSearch();  // the results belong to the search thread until it is idle
  const SearchController& search = control_.search();
  sendInfo(search.depth(), search.bestScore());
  sendBestMove(search.bestMove(), withPonderMove ? search.ponderMove() : NULL_MOVE);
}

void UciFrontEnd::sendInfo(int depth, Score score) {
  const SearchController& search = control_.search();
  send(uciInfoLine(depth, search.selectiveDepth(), score,
                   {control_.clock().elapsed(), search.nodes()}, search.principalVariation()));
}

void UciFrontEnd::sendBestMove(Move bestMove, Move ponderMove) {
  send(uciBestMoveLine(bestMove, ponderMove));
  logLine("<--bestmove ", moveToText(bestMove).c_str());
  if (!ponderMove.isNull()) logLine("<--ponder ", moveToText(ponderMove).c_str());
  if (bestMove.isNull()) print(stderr, "No move generated! bm=%x\n", bestMove.word());
}

}  // namespace ombrin
