#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string_view>

namespace ombrin {

// The WinBoard front-end's own log: one line per call, with a prefix that tells the direction, the
// time since the log was opened and the engine's status. Silent until it is opened. Any thread.
class WinboardLog {
 public:
  static constexpr std::string_view RECEIVED = "-->";
  static constexpr std::string_view SENT = "<--";
  static constexpr std::string_view NOTE = "   ";

  // Logs to `file`, which stays its opener's; time counts from now.
  void open(std::FILE* file);
  void write(std::string_view prefix, const char* status, std::string_view message);

 private:
  std::mutex mutex_;
  std::FILE* file_ = nullptr;
  std::uint64_t origin_ = 0;
};

}  // namespace ombrin
