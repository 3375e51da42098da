#pragma once

#include <cstdarg>
#include <string>

#include "platform/printf_format.h"

namespace ombrin {

// Appends the formatted text. For lines that are put together piece by piece and written at once.
void append(std::string& text, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void vappend(std::string& text, const char* format, std::va_list arguments)
    OMBRIN_PRINTF_FORMAT(2, 0);

}  // namespace ombrin
