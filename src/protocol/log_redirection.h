#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrin {

// The log files that a front-end has opened. All stay open as long as the object lives, because
// another thread may be writing to the one that was replaced. Command thread.
class LogRedirection {
 public:
  LogRedirection() = default;
  LogRedirection(const LogRedirection&) = delete;
  LogRedirection& operator=(const LogRedirection&) = delete;
  // Whatever still logs to one of the files goes on to standard output.
  ~LogRedirection();

  // Where to log next in `directory`, which is made if need be. Without a directory, or when it
  // cannot be made, logging is switched off and there is no name.
  std::optional<std::string> nextName(std::string_view directory);
  // Null when the file cannot be written.
  std::FILE* open(const std::string& name);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::vector<std::unique_ptr<std::FILE, Closer>> files_;
};

}  // namespace ombrin
