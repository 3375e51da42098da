#include "book/build_advice.h"

#include <algorithm>
#include <span>
#include <string>

#include "util/print.h"

namespace ombrin {

namespace {

struct Rejection {
  std::int64_t count;
  const char* counter;  // the name under which it was printed
  std::string reason;
};

void advise(std::span<const Rejection> rejections, std::int64_t whole) {
  const Rejection& most = *std::ranges::max_element(rejections, {}, &Rejection::count);
  if (most.count == 0) return;
  print(stdout, "-%s: %lli %%: %s\n", most.counter,
        static_cast<long long>(100 * most.count / whole), most.reason.c_str());
}

}  // namespace

void adviseOnGames(const BuildCounters& counters, const BuildSettings& settings,
                   std::int64_t games) {
  const bool unrated = 2 * counters.unrated > counters.belowMinelo;
  const Rejection rejections[] = {
      {counters.errors, "error", "these games cannot be read"},
      {counters.otherVariants, "variant", "these are games of other variants"},
      {counters.belowMinply, "minply",
       "these games have fewer than " + std::to_string(settings.minply) +
           " half-moves; book.build.minply=0 takes them"},
      {counters.belowMinelo, "minelo",
       unrated ? "these games carry no ratings; book.build.minelo=0 takes them"
               : "neither player of these games has " + std::to_string(settings.minelo) +
                     "; book.build.minelo=0 takes them"},
      {counters.aboveMaxelodelta, "maxelo",
       "the ratings of the players differ by more than " + std::to_string(settings.maxelodelta) +
           "; book.build.maxelodelta=0 takes them"},
      {counters.withoutResult, "noresult", "these games have no result"},
  };
  advise(rejections, games);
}

void adviseOnMoves(const BuildCounters& counters, std::int64_t moves) {
  const Rejection rejections[] = {
      {counters.droppedByGames, "mingames",
       "these moves have too few games; book.build.mingames=1 takes them"},
      {counters.droppedByQuality, "minmoveelo",
       "the Elo of these moves is too low; book.build.minquality=0 takes them"},
      {counters.droppedByScore, "minscore",
       "these moves score too little; book.build.minscorew=0 and book.build.minscoreb=0 take "
       "them"},
  };
  advise(rejections, moves);
}

}  // namespace ombrin
