#include "util/ref_string.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace ombrin {

std::atomic<std::uint32_t> liveStrings{0};

namespace {

// Relaxed: the counter orders nothing.
std::shared_ptr<std::string> makeText(std::string_view text) {
  liveStrings.fetch_add(1, std::memory_order_relaxed);
  const auto release = [](std::string* dead) {
    liveStrings.fetch_sub(1, std::memory_order_relaxed);
    std::default_delete<std::string>()(dead);
  };
  return {std::make_unique<std::string>(text).release(), release};
}

}  // namespace

RefString::RefString() : RefString(std::string_view()) {}
RefString::RefString(std::string_view text) : text_(makeText(text)) {}
RefString::RefString(const char* text)
    : RefString(text != nullptr ? std::string_view(text) : std::string_view()) {}

void RefString::append(std::string_view more) {
  if (more.empty()) return;
  if (text_.use_count() > 1) text_ = makeText(*text_);
  text_->append(more);
}

RefString RefString::substring(std::size_t from, std::size_t to) const {
  const std::size_t end = std::min(to, length());
  return from < end ? RefString(view().substr(from, end - from)) : RefString();
}

void RefString::clear() {
  *this = RefString();
}

int toInt(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  if (text.empty() || text.front() < '0' || text.front() > '9') return 0;
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  constexpr std::int64_t LIMIT = std::numeric_limits<int>::max();
  if (result.ec != std::errc() || value > LIMIT) value = LIMIT + (negative ? 1 : 0);
  return static_cast<int>(negative ? -value : value);
}

}  // namespace ombrin
