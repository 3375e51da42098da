#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "book/game_collector.h"

namespace ombrin {

// Tells what is wrong with the games of a collection, one line for each game, on standard output;
// of the games with the same kind of problem only the first ones, and then how many there are.
class ErrorReport {
 public:
  static constexpr std::int64_t MOST_OF_A_KIND = 20;

  // `line` is the last one of the game, and `number` counts the games from 0.
  void add(const PgnGame& game, const GameProblem& problem, std::uint32_t line,
           std::int64_t number);
  // To be called when there are no more games.
  void finish() const;

 private:
  std::array<std::int64_t, GameProblem::KINDS> counts_{};
};

}  // namespace ombrin
