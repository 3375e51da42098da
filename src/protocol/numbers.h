#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ombrin {

// Takes the decimal number at the start of the text, with the white space and the sign before it,
// off the text; nothing, and the text as it was, when there is none. Beyond 64 bits, the nearest
// end of the range.
std::optional<std::int64_t> takeNumber(std::string_view& text);

// The nearest int.
int clampToInt(std::int64_t value);

}  // namespace ombrin
