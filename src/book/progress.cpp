#include "book/progress.h"

#include <algorithm>

#include "platform/standard_streams.h"
#include "util/print.h"

namespace ombrin {

namespace {

// Looking at the clock takes longer than a game.
constexpr std::uint64_t CALLS_PER_LOOK = 64;
constexpr std::chrono::milliseconds BETWEEN_LINES(250);

}  // namespace

Progress::Progress(std::uint64_t whole, std::uint64_t perDot)
    : onTerminal_(isTerminal(stdout)), whole_(whole), perDot_(perDot) {}

void Progress::at(std::uint64_t done) {
  if (!onTerminal_) return dots(done);
  if (isTimeToShow()) show(done, 0);
}

void Progress::at(std::uint64_t done, std::uint64_t games) {
  if (!onTerminal_) return dots(games);
  if (++calls_ % CALLS_PER_LOOK == 0 && isTimeToShow()) show(done, games);
}

void Progress::dots(std::uint64_t steps) {
  if (steps / perDot_ <= dots_) return;
  print(stdout, "%s", std::string(steps / perDot_ - dots_, '.').c_str());
  std::fflush(stdout);
  dots_ = steps / perDot_;
}

bool Progress::isTimeToShow() {
  const Clock::time_point now = Clock::now();
  if (now - shown_ < BETWEEN_LINES) return false;
  shown_ = now;
  return true;
}

void Progress::show(std::uint64_t done, std::uint64_t games) {
  const double seconds = std::chrono::duration<double>(shown_ - start_).count();
  const double part =
      whole_ == 0 ? 0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(whole_));
  std::string line;
  if (part > 0) line += std::to_string(static_cast<int>(100 * part)) + " %  ";
  if (games > 0) {
    line += std::to_string(games) + " games  " +
            std::to_string(static_cast<std::uint64_t>(static_cast<double>(games) / seconds)) +
            " games/s  ";
  }
  if (part > 0) {
    const auto left = static_cast<std::uint64_t>(seconds / part - seconds);
    const std::string rest = std::to_string(left % 60);
    line += std::to_string(left / 60) + (rest.size() < 2 ? ":0" : ":") + rest + " left";
  }
  const std::size_t length = line.size();
  line.resize(std::max(length, width_), ' ');
  width_ = length;
  print(stdout, "\r%s", line.c_str());
  std::fflush(stdout);
}

void Progress::clear() {
  if (width_ == 0) return;
  print(stdout, "\r%s\r", std::string(width_, ' ').c_str());
  width_ = 0;
}

}  // namespace ombrin
