#include "util/scan.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace ombrin {

namespace {

constexpr std::string_view WHITE_SPACE = " \t\n\v\f\r";

std::string_view withoutWhiteSpace(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(WHITE_SPACE), text.size()));
  return text;
}

// Without white space and a plus sign, which the standard library does not take.
std::string_view numberText(std::string_view text) {
  text = withoutWhiteSpace(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  return text;
}

}  // namespace

std::optional<std::int64_t> takeNumber(std::string_view& text) {
  using Limits = std::numeric_limits<std::int64_t>;
  const std::string_view number = numberText(text);
  const char* const last = number.data() + number.size();
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), last, value);
  if (error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    value = number.front() == '-' ? Limits::min() : Limits::max();
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

std::optional<double> takeDecimal(std::string_view& text) {
  const std::string_view number = numberText(text);
  // The standard library takes the names of what is no number, too.
  if (number.find_first_of("0123456789") > number.find_first_not_of("-.")) return std::nullopt;
  double value = 0;
  const char* const last = number.data() + number.size();
  const auto [end, error] = std::from_chars(number.data(), last, value, std::chars_format::fixed);
  if (error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    std::string_view whole = number;
    value = static_cast<double>(takeNumber(whole).value_or(0));
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

std::string_view takeWord(std::string_view& text, std::size_t most) {
  text = withoutWhiteSpace(text);
  const std::size_t end = std::min({text.find_first_of(WHITE_SPACE), text.size(), most});
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

int clampToInt(std::int64_t value) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

int toInt(std::string_view text) {
  return clampToInt(takeNumber(text).value_or(0));
}

}  // namespace ombrin
