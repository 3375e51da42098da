#include "protocol/report_throttle.h"

namespace ombrin {

bool ReportThrottle::admitBestLine(const SearchReport& report) {
  const bool repeated = report.score == lastScore_ && report.bestMove.isSameAs(lastMove_);
  stable_ = repeated && report.depth > lastDepth_ + STABLE_DEPTHS;
  if (stable_ && report.time < nextReport_) return false;
  if (!repeated) {
    lastDepth_ = report.depth;
    lastScore_ = report.score;
    lastMove_ = report.bestMove;
  }
  return true;
}

bool ReportThrottle::admitCurrentMove(const RootMoveReport& report) {
  if ((report.number != 0 || stable_) && report.time < nextReport_) return false;
  nextReport_ = report.time + INTERVAL;
  return true;
}

}  // namespace ombrin
