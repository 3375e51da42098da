#pragma once

#include <cstdarg>
#include <string>

namespace ombrin {

// Appends the formatted text. For lines that are put together piece by piece and written at once.
void append(std::string& text, const char* format, ...) __attribute__((format(printf, 2, 3)));
void vappend(std::string& text, const char* format, std::va_list arguments)
    __attribute__((format(printf, 2, 0)));

}  // namespace ombrin
