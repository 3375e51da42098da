// Moves as some programs and people write them, in the letters that all others use.
#pragma once

#include <string>
#include <string_view>

namespace ombrin {

// The first byte of a chess figurine in UTF-8, and of what may follow it to choose its shape.
inline constexpr unsigned FIGURINE_LEAD = 0xe2;
inline constexpr unsigned VARIANT_LEAD = 0xef;

// Does the text begin with castling to either side, written with zeros?
inline bool isCastlingWithZeros(std::string_view text) {
  return text.starts_with("0-0");
}

// The move with letters for zeros and figurines, and without "e.p."; empty when nothing is left.
std::string usualSpelling(std::string_view word);

}  // namespace ombrin
