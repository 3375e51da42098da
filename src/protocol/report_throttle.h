#pragma once

#include <cstdint>

#include "search/search_report.h"

namespace ombrin {

// Keeps a search that races through the first iterations, or through the same line ever deeper,
// from flooding the GUI. Times are milliseconds since the search started. Used by one thread at a
// time: the search thread, and before a search whoever starts it.
class ReportThrottle {
 public:
  // A search starts.
  void reset() { *this = ReportThrottle(); }

  // Is this line to be reported? Not when it says what was said before and comes early.
  bool admitBestLine(const SearchReport& report);
  // Is this root move to be reported? If so, others have to wait.
  bool admitCurrentMove(const RootMoveReport& report);

 private:
  static constexpr int STABLE_DEPTHS = 8;
  static constexpr std::uint64_t INTERVAL = 100;

  int lastDepth_ = 0;
  Score lastScore_;
  Move lastMove_;
  bool stable_ = false;
  std::uint64_t nextReport_ = 0;
};

}  // namespace ombrin
