// Taking numbers and words off the front of a text. White space before them goes with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ombrin {

// A whole decimal number with an optional sign; nothing, and the text as it was, when the text does
// not begin with one. Beyond 64 bits, the nearest end of the range.
std::optional<std::int64_t> takeNumber(std::string_view& text);

// The same with an optional fraction behind a point: "5", "-4.75", ".5". No exponents.
std::optional<double> takeDecimal(std::string_view& text);

// The characters up to the next white space, but no more than `most` of them; the rest of a longer
// word is the next one. Empty when there is nothing left.
std::string_view takeWord(std::string_view& text, std::size_t most = std::string_view::npos);

// The nearest int.
int clampToInt(std::int64_t value);

// The number that the text begins with, as the nearest int; 0 when it begins with none.
int toInt(std::string_view text);

}  // namespace ombrin
