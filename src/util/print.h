// The one function behind all printf-style output, so that the compiler checks every format.
#pragma once

#include <cstdarg>
#include <cstdio>

#include "platform/printf_format.h"

namespace ombrin {

// Writes the formatted text as one piece: texts of different threads never mix within a call.
// Nothing happens when `stream` is null; write errors are ignored. Any thread.
void print(std::FILE* stream, const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
void vprint(std::FILE* stream, const char* format, std::va_list arguments)
    OMBRIN_PRINTF_FORMAT(2, 0);

}  // namespace ombrin
