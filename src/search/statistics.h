// What a search tells the log.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "search/search_state.h"

namespace ombrin {

// A count shortened for a table: divided by 1024, at most four times, until it is below 100000, and
// the letter that says how often.
struct ShortCount {
  std::int64_t value;
  char unit;
};
ShortCount shortCount(std::uint64_t count);

// "[12/25]    3.250    1024k      31 " and the suffix: depth, time, nodes and score of the main
// thread's search so far. Without a line end.
std::string progressLine(const SearchState& state, std::uint64_t milliseconds, Score score,
                         std::string_view suffix);

// The block of statistics at the end of a search that took so long.
std::string statisticsBlock(const SearchState& state, std::uint64_t milliseconds);

}  // namespace ombrin
