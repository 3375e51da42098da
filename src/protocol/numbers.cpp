#include "protocol/numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace ombrin {

std::optional<std::int64_t> takeNumber(std::string_view& text) {
  using Limits = std::numeric_limits<std::int64_t>;
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return std::nullopt;
  const char* first = text.data() + start;
  const char* const last = text.data() + text.size();
  const bool negative = *first == '-';
  if (*first == '+' && last - first > 1 && first[1] != '-') ++first;
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(first, last, value);
  if (error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) value = negative ? Limits::min() : Limits::max();
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

int clampToInt(std::int64_t value) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace ombrin
