#include "util/tokenizer.h"

#include <algorithm>

namespace ombrin {

void Tokenizer::setTrimmedText(const RefString& text) {
  const std::size_t start = text.view().find_first_not_of(' ');
  rest_ = start == std::string_view::npos ? RefString() : text.substring(start, text.length());
}

RefString Tokenizer::nextToken() {
  const std::string_view text = rest_.view();
  const std::size_t delimiter = text.find_first_of(delimiters_);
  if (delimiter == std::string_view::npos) {
    RefString token = rest_;
    rest_.clear();
    return token;
  }
  RefString token = rest_.substring(0, delimiter);
  std::size_t next = delimiter + 1;
  if (text[delimiter] == ' ') next = std::min(text.find_first_not_of(' ', next), text.size());
  rest_ = rest_.substring(next, text.size());
  return token;
}

}  // namespace ombrin
