#pragma once

#include <string>
#include <string_view>

namespace ombrin {

// Finds names for numbered log files: <directory>/ombrin-0000.log and so on.
class LogFileNamer {
 public:
  explicit LogFileNamer(std::string_view directory) : directory_(directory) {}

  // Makes the directory, with those above it; false, with a line on standard error, when that
  // fails.
  bool prepareDirectory() const;
  // The first name, from number 0 upwards, that no readable file has.
  std::string nextFreeName() const;

 private:
  std::string directory_;
};

}  // namespace ombrin
