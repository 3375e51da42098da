#pragma once

#include <fstream>
#include <string>

namespace ombrin {

// A file that takes its name only when it is complete: until commit() it grows under a name of its
// own beside the target, and what the target held before stays whole, however many write to one
// name. What is not committed is removed, also when the process is asked to end. A target that is
// no ordinary file is written directly.
class BookOutput {
 public:
  // Opens for writing; see isOpen().
  explicit BookOutput(const std::string& target);
  ~BookOutput();
  BookOutput(const BookOutput&) = delete;
  BookOutput& operator=(const BookOutput&) = delete;

  bool isOpen() const { return stream_.is_open(); }
  // The name that was asked for.
  const std::string& name() const { return name_; }
  std::ostream& stream() { return stream_; }

  // Closes the file and gives it its name. False when anything went wrong since it was opened.
  bool commit();

 private:
  void discard();

  std::string name_;
  std::string target_;
  std::string temporary_;  // the name under which it is written; empty: the target's
  std::ofstream stream_;
};

// Do both names lead to one file, by whatever way? False when one of them is missing.
bool isSameFile(const std::string& a, const std::string& b);

}  // namespace ombrin
