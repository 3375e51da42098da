// Formatted texts, before anybody writes them.
#pragma once

#include <array>
#include <cstdarg>
#include <string>
#include <string_view>

#include "platform/printf_format.h"

namespace ombrin {

// Appends the formatted text. For lines that are put together piece by piece and written at once.
void append(std::string& text, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void vappend(std::string& text, const char* format, std::va_list arguments)
    OMBRIN_PRINTF_FORMAT(2, 0);

// One formatted text. Allocates only for what is longer than its own room, so that a short one can
// be had when memory has run out.
class FormattedText {
 public:
  FormattedText(const char* format, std::va_list arguments) OMBRIN_PRINTF_FORMAT(2, 0);
  FormattedText(const FormattedText&) = delete;
  FormattedText& operator=(const FormattedText&) = delete;

  std::string_view view() const { return view_; }

 private:
  std::array<char, 1024> room_;
  std::string longText_;
  std::string_view view_;
};

}  // namespace ombrin
