#include "util/ref_string.h"

#include <algorithm>

namespace ombrin {

std::atomic<std::uint32_t> liveStrings{0};

namespace {

// A text that counts itself for as long as anyone holds it.
struct CountedText {
  explicit CountedText(std::string_view bytes) : text(bytes) { ++liveStrings; }
  CountedText(const CountedText&) = delete;
  CountedText& operator=(const CountedText&) = delete;
  ~CountedText() { --liveStrings; }

  std::string text;
};

std::shared_ptr<std::string> makeText(std::string_view bytes) {
  const auto counted = std::make_shared<CountedText>(bytes);
  return {counted, &counted->text};
}

}  // namespace

RefString::RefString() : text_(makeText({})) {}

RefString::RefString(std::string_view text) : text_(makeText(text)) {}

RefString::RefString(const char* text)
    : text_(makeText(text != nullptr ? std::string_view(text) : std::string_view())) {}

void RefString::append(std::string_view more) {
  if (more.empty()) return;
  if (text_.use_count() > 1) {
    // `more` may be a part of the old text, which must outlive the copying.
    const std::shared_ptr<std::string> old = text_;
    text_ = makeText(*old);
    text_->append(more);
  } else {
    text_->append(more);
  }
}

RefString RefString::substring(std::size_t from, std::size_t to) const {
  to = std::min(to, length());
  return from < to ? RefString(view().substr(from, to - from)) : RefString();
}

void RefString::clear() {
  text_ = makeText({});
}

}  // namespace ombrin
