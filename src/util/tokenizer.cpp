#include "util/tokenizer.h"

#include <algorithm>

namespace ombrin {

void Tokenizer::setText(RefString text) {
  text_ = std::move(text);
  position_ = 0;
}

void Tokenizer::setTrimmedText(const RefString& text) {
  setText(text);
  skipSpaces();
}

const RefString& Tokenizer::rest() const {
  if (position_ > 0) {
    text_ = text_.substring(position_, text_.length());
    position_ = 0;
  }
  return text_;
}

RefString Tokenizer::nextToken() {
  const std::size_t start = position_;
  const std::size_t end = std::min(text_.view().find_first_of(delimiters_, start), text_.length());
  position_ = end;
  if (!atEnd()) {
    const bool space = text_.view()[end] == ' ';
    ++position_;
    if (space) skipSpaces();
  }
  return text_.substring(start, end);
}

void Tokenizer::skipSpaces() {
  position_ = std::min(text_.view().find_first_not_of(' ', position_), text_.length());
}

}  // namespace ombrin
