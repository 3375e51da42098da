#pragma once

#include "search/search_report.h"

namespace ombrin {

// Listens to a search; one that overrides nothing is content with the log. All operations are
// called on the thread that searches and hold the search up until they return; they must not wait
// for the search to stop.
class SearchObserver {
 public:
  SearchObserver() = default;
  SearchObserver(const SearchObserver&) = delete;
  SearchObserver& operator=(const SearchObserver&) = delete;
  virtual ~SearchObserver() = default;

  // The search has ended. Called once per search, as its very last act.
  virtual void finished(const SearchReport& /*report*/) {}
  // The first move of an iteration has been searched, or a later one has become best.
  virtual void reportBestLine(const SearchReport& /*report*/) {}
  virtual void reportCurrentMove(const RootMoveReport& /*report*/) {}
};

}  // namespace ombrin
