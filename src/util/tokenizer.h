#pragma once

#include <cstddef>
#include <string_view>

#include "util/ref_string.h"

namespace ombrin {

// Splits a text into words. Holds the part that is still to be split; one thread at a time.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view delimiters = " \t") : delimiters_(delimiters) {}

  void setText(RefString text);
  // setText without the text's leading spaces.
  void setTrimmedText(const RefString& text);
  // The part that is still to be split; the reference holds until the next call of any operation
  // that changes it.
  const RefString& rest() const;
  bool atEnd() const { return position_ == text_.length(); }

  // The text up to the first delimiter, which is consumed; when it is a space, so is every space
  // that follows. A text that starts with a delimiter yields an empty token, so a caller loops
  // until atEnd(); every call consumes at least one character.
  RefString nextToken();

 private:
  void skipSpaces();

  std::string_view delimiters_;
  // The rest is what follows `position_`; cutting it off only on demand keeps the splitting of a
  // long line from copying it once per word.
  mutable RefString text_;
  mutable std::size_t position_ = 0;
};

}  // namespace ombrin
