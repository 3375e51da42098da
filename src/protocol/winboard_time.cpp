// The part of the WinBoard front-end that deals with time and other limits.
#include <algorithm>
#include <cmath>
#include <limits>

#include "protocol/winboard_front_end.h"
#include "util/scan.h"

namespace ombrin {

namespace {

// The nearest int, in milliseconds.
int toMillis(double seconds) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(
      std::clamp(std::round(seconds * 1000), double{Limits::min()}, double{Limits::max()}));
}

// "0.5" is half a second; in milliseconds.
std::optional<int> readSeconds(std::string_view text) {
  const std::optional<double> seconds = takeDecimal(text);
  if (!seconds) return std::nullopt;
  return toMillis(*seconds);
}

// "5" is five minutes, "0:30" thirty seconds; in milliseconds.
std::optional<int> readBaseTime(std::string_view text) {
  const std::optional<double> minutes = takeDecimal(text);
  if (!minutes) return std::nullopt;
  double seconds = 0;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    seconds = takeDecimal(text).value_or(0);
  }
  return toMillis(*minutes * 60 + seconds);
}

int scaled(int value, int factor) {
  return clampToInt(std::int64_t{value} * factor);
}

}  // namespace

void WinboardFrontEnd::level() {
  constexpr int DEFAULT_MOVES = 40;
  const std::optional<int> moves = numberArgument(DEFAULT_MOVES);
  const RefString base = tokens_.nextToken();
  const std::optional<int> baseTime = base.empty() ? 0 : readBaseTime(base.view());
  const RefString added = tokens_.nextToken();
  const std::optional<int> increment = added.empty() ? 0 : readSeconds(added.view());
  if (!moves || !baseTime || !increment) return;
  movesPerControl_ = *moves;
  basePly_ = game_.board().gamePly();
  millis_ = *baseTime;
  incrementMs_ = *increment;
  fixedMoveTime_.reset();
}

void WinboardFrontEnd::time() {
  const std::optional<int> centiseconds = numberArgument(0);
  if (!centiseconds) return;
  millis_ = scaled(*centiseconds, 10);
  if (millis_ == 0) note("time(): warning no millis left!\n");
}

void WinboardFrontEnd::moveTime() {
  constexpr int DEFAULT_TIME = 5000;
  const RefString text = tokens_.nextToken();
  const std::optional<int> millis = text.empty() ? DEFAULT_TIME : readSeconds(text.view());
  if (!millis) return;
  fixedMoveTime_ = std::max(*millis, 0);
  note("settime(): nseconds=%i\n", *millis / 1000);
}

void WinboardFrontEnd::depthLimit() {
  const std::optional<int> depth = numberArgument(0);
  if (!depth) return;
  depthLimit_ = *depth;
  note("maxdepth=%i\n", depthLimit_);
}

SearchLimits WinboardFrontEnd::limits(bool infinite) {
  note("updatetime(): nmoves=%i, millis=%u, incms=%i\n", movesPerControl_,
       static_cast<unsigned>(millis_), incrementMs_);
  // A game that was taken back to before the "level" has made no moves since.
  const std::uint32_t ply = game_.board().gamePly();
  const int movesMade = static_cast<int>((ply - std::min(basePly_, ply)) / 2);
  const int movesToGo = movesPerControl_ != 0 ? movesPerControl_ - movesMade % movesPerControl_ : 0;
  note("remaining moves until time control=%i (nmoved=%i)\n", movesToGo, movesMade);
  const std::optional<int> movesOutOfBook = game_.movesOutOfBook();
  if (movesOutOfBook) note("out of book=%i\n", *movesOutOfBook);

  SearchLimits limits;
  if (depthLimit_ > 0) limits.depth = depthLimit_;
  limits.moveTime = fixedMoveTime_;
  limits.game = {.movesToGo = movesToGo,
                 .remaining = millis_,
                 .increment = incrementMs_,
                 .reserve = settings_.timeGap.value_or(defaultReserve(millis_))};
  limits.infinite = infinite;
  limits.canPonder = ponder_;
  limits.movesOutOfBook = movesOutOfBook.value_or(0);
  note("Nominal search time is %3.2f seconds, infinite=%i, timegap=%ims\n",
       TimeBudgets(limits).nominal() / 1000.0, infinite ? 1 : 0,
       fixedMoveTime_ ? 0 : limits.game->reserve);
  return limits;
}

}  // namespace ombrin
