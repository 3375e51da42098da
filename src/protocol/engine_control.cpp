#include "protocol/engine_control.h"

#include <cstdio>

#include "board/fen.h"
#include "board/make_move.h"

namespace ombrin {

namespace {

// Lets go of a mutex that the caller holds, for as long as the object lives.
class Unlocked {
 public:
  explicit Unlocked(std::mutex& mutex) : mutex_(mutex) { mutex_.unlock(); }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;
  ~Unlocked() { mutex_.lock(); }

 private:
  std::mutex& mutex_;
};

}  // namespace

bool EngineControl::setPosition(std::string_view fen) {
  const FenResult result = setFen(draft_, fen);
  positionRefused_ = !result;
  if (positionRefused_) {
    const std::string line = result.error + '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    return false;
  }
  board_.copyFrom(draft_);
  ++settlements_;
  return true;
}

Move EngineControl::makeGameMove(Move move) {
  board_.makeRoom();
  const Move made = makeMove(board_, move);
  if (!made.isNull()) board_.rootMove = made;
  return made;
}

void EngineControl::settleGame() {
  board_.compactPieces();
  ++settlements_;
}

void EngineControl::stopSearch() {
  const Unlocked unlocked(mutex_);
  controller_.stopAndWait();
}

void EngineControl::stopSearchOfOthers(const SearchObserver& observer) {
  if (observer_ != &observer) stopSearch();
}

void EngineControl::startSearch(const SearchLimits& limits, SearchObserver& observer) {
  observer_ = &observer;
  controller_.start(board_, limits, observer);
}

void EngineControl::searchAndWait(const SearchLimits& limits, SearchObserver& observer) {
  observer_ = &observer;
  const Unlocked unlocked(mutex_);
  controller_.search(board_, limits, observer);
}

void EngineControl::searchNext(const SearchLimits& limits, SearchObserver& observer) {
  observer_ = &observer;
  controller_.startNext(board_, limits, observer);
}

void EngineControl::ponderhit(const SearchLimits& limits) {
  const Unlocked unlocked(mutex_);
  controller_.ponderhit(limits);
}

}  // namespace ombrin
