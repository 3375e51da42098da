#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ombrin {

// Shows on standard output that long work goes on, and how far: on a terminal with one line that is
// written over, elsewhere with dots. One thread.
class Progress {
 public:
  // Steps of work on entries of books that a dot stands for.
  static constexpr std::uint64_t ENTRIES_PER_DOT = 1000000;
  // For work of which only a terminal shows how far it is.
  static constexpr std::uint64_t NO_DOTS = UINT64_MAX;

  // The work is done at `whole` units; 0 when nobody knows. A dot stands for `perDot` steps.
  Progress(std::uint64_t whole, std::uint64_t perDot);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  // The line goes away; dots stay.
  ~Progress() { clear(); }

  // So many units are done.
  void at(std::uint64_t done);
  // The same, after so many games. To be called after every one of them.
  void at(std::uint64_t done, std::uint64_t games);
  // Makes way for other text.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  void dots(std::uint64_t steps);
  bool isTimeToShow();
  void show(std::uint64_t done, std::uint64_t games);

  const bool onTerminal_;
  const std::uint64_t whole_;
  const std::uint64_t perDot_;
  std::uint64_t dots_ = 0;
  std::uint64_t calls_ = 0;
  const Clock::time_point start_ = Clock::now();
  Clock::time_point shown_ = start_;
  std::size_t width_ = 0;  // of the line that stands there
};

}  // namespace ombrin
