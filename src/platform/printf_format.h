#pragma once

// Lets the compiler check a printf-style format: OMBRIN_PRINTF_FORMAT(n, m) behind a declaration
// says that parameter n is the format and that its arguments begin with parameter m (0: they come
// as a va_list). The C library for Windows that we build with follows the standard's formats,
// though the compiler's plain "printf" there means another set.
#if defined(__MINGW32__)
#define OMBRIN_PRINTF_FORMAT(string, first) __attribute__((format(gnu_printf, string, first)))
#else
#define OMBRIN_PRINTF_FORMAT(string, first) __attribute__((format(printf, string, first)))
#endif
