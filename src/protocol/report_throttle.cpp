#include "protocol/report_throttle.h"

namespace ombrin {

bool ReportThrottle::admitIteration(int depth, Score score, Move move, std::uint64_t elapsed) {
  const bool repeated = score == lastScore_ && move.isSameAs(lastMove_);
  stable_ = repeated && depth > lastDepth_ + STABLE_DEPTHS;
  if (stable_ && elapsed < nextReport_) return false;
  if (!repeated) {
    lastDepth_ = depth;
    lastScore_ = score;
    lastMove_ = move;
  }
  return true;
}

bool ReportThrottle::admitCurrentMove(int moveNumber, std::uint64_t elapsed) {
  if ((moveNumber != 0 || stable_) && elapsed < nextReport_) return false;
  nextReport_ = elapsed + INTERVAL;
  return true;
}

}  // namespace ombrin
