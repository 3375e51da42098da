#pragma once

#include <string_view>

#include "util/ref_string.h"

namespace ombrin {

// Splits a text into words. Holds the part that is still to be split; one thread at a time.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view delimiters = " \t") : delimiters_(delimiters) {}

  void setText(RefString text) { rest_ = std::move(text); }
  // setText without the text's leading spaces.
  void setTrimmedText(const RefString& text);
  const RefString& rest() const { return rest_; }
  bool atEnd() const { return rest_.empty(); }

  // The text up to the first delimiter, which is consumed; when it is a space, so is every space
  // that follows. A text that starts with a delimiter yields an empty token, so a caller loops
  // until atEnd(); every call consumes at least one character.
  RefString nextToken();

 private:
  std::string_view delimiters_;
  RefString rest_;
};

}  // namespace ombrin
