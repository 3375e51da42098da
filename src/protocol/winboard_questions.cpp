// The part of the WinBoard front-end that answers questions about the game and the search.
#include <algorithm>

#include "board/move_generation.h"
#include "board/notation.h"
#include "platform/tick.h"
#include "protocol/winboard_front_end.h"

namespace ombrin {

template <typename Use>
void WinboardFrontEnd::useWithoutPonderMove(Use use) {
  const Move pending = game_.ponderMove();
  if (!pending.isNull()) game_.takeBack();
  use();
  if (!pending.isNull()) game_.playPonderMove(onGameBoard(pending));
}

void WinboardFrontEnd::hint() {
  useWithoutPonderMove([&] {
    if (!lastAnswer_ || lastAnswer_->place != game_.place()) return;
    const Move move = onGameBoard(lastAnswer_->expected);
    if (!move.isNull()) send("Hint: %s\n", moveToCoordinates(move).c_str());
  });
}

void WinboardFrontEnd::listBookMoves() {
  useWithoutPonderMove([&] {
    for (const BookPicker::Choice& choice : picker_.choices()) {
      if (choice.move.isNull()) continue;
      send(" %s %5.1f%%\n", moveToCoordinates(choice.move).c_str(), choice.probability * 100);
    }
  });
  send("\n");
}

void WinboardFrontEnd::tellProgress() {
  if (!analyze_) return;
  RootMoveReport progress;
  {
    const std::lock_guard lock(progressLock_);
    progress = progress_;
  }
  const bool searching = status_.current() == WinboardStatus::SEARCHING;
  const std::uint64_t time = searching ? tickCount() - searchStart_ : progress.time;
  const int moves = static_cast<int>(legalMoves(game_.board()).size());
  const bool begun = !progress.move.isNull();
  send("stat01: %llu %llu %i %i %i%s%s\n", static_cast<unsigned long long>(time / 10),
       static_cast<unsigned long long>(control_.search().nodes()), progress.depth,
       begun ? std::max(moves - progress.number - 1, 0) : moves, moves, begun ? " " : "",
       begun ? moveToCoordinates(progress.move).c_str() : "");
}

void WinboardFrontEnd::reportCurrentMove(const RootMoveReport& report) {
  const std::lock_guard lock(progressLock_);
  progress_ = report;
}

}  // namespace ombrin
