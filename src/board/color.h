#pragma once

#include <cstdint>

namespace ombrin {

// A side of the game; the values index tables and stand for the side to move.
enum Color : std::uint32_t { WHITE = 0, BLACK = 1 };

constexpr Color operator~(Color color) {
  return static_cast<Color>(color ^ 1U);
}

}  // namespace ombrin
