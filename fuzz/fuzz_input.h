#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "util/log.h"

namespace ombrin {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The part of `text` before the first line end; `text` keeps what follows it.
inline std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// Ends the program, for the fuzzer to see, when what must hold does not.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

// Nobody reads what thousands of inputs print.
inline void silence() {
  logFile = nullptr;
  static const bool silenced = std::freopen("/dev/null", "w", stdout) != nullptr;
  (void)silenced;
}

}  // namespace ombrin
