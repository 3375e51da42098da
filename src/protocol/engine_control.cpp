#include "protocol/engine_control.h"

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

void EngineControl::stopSearch() {
  const Unlocked unlocked(mutex_);
  controller_.stopAndWait();
}

void EngineControl::stopSearchOfOthers(const SearchObserver& observer) {
  if (observer_ != &observer) stopSearch();
}

void EngineControl::startSearch(const Board& board, const SearchLimits& limits,
                                SearchObserver& observer) {
  observer_ = &observer;
  controller_.start(board, limits, observer);
}

void EngineControl::searchAndWait(const Board& board, const SearchLimits& limits,
                                  SearchObserver& observer) {
  observer_ = &observer;
  const Unlocked unlocked(mutex_);
  controller_.search(board, limits, observer);
}

void EngineControl::searchNext(const Board& board, const SearchLimits& limits,
                               SearchObserver& observer) {
  observer_ = &observer;
  controller_.startNext(board, limits, observer);
}

void EngineControl::ponderhit(const SearchLimits& limits) {
  const Unlocked unlocked(mutex_);
  controller_.ponderhit(limits);
}

}  // namespace ombrin
