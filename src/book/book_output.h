#pragma once

#include <fstream>
#include <string>

namespace ombrin {

// A file that takes its name only when it is complete: until commit() it grows under a temporary
// name beside the target, and what the target held before stays whole. What is not committed is
// removed. A target that is no ordinary file is written directly.
class BookOutput {
 public:
  // Opens for writing; see isOpen().
  explicit BookOutput(const std::string& target);
  ~BookOutput();
  BookOutput(const BookOutput&) = delete;
  BookOutput& operator=(const BookOutput&) = delete;

  bool isOpen() const { return stream_.is_open(); }
  std::ostream& stream() { return stream_; }

  // Closes the file and gives it its name. False when anything went wrong since it was opened.
  bool commit();

 private:
  std::string target_;
  std::string written_;  // the name under which it is written
  std::ofstream stream_;
};

}  // namespace ombrin
