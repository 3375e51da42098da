#include "book/book_output.h"

#include <filesystem>

#include "util/file_system.h"
#include "util/temporary_files.h"

namespace ombrin {

namespace fs = std::filesystem;

BookOutput::BookOutput(const std::string& target) : name_(target), target_(target) {
  std::error_code error;
  const fs::file_status status = fs::status(pathOf(target_), error);
  if (!fs::exists(status) || fs::is_regular_file(status)) {
    // A link stays a link: what it points to is replaced.
    const fs::path path = pathOf(target_);
    if (fs::is_symlink(path, error)) target_ = nameOf(fs::weakly_canonical(path, error));
    temporary_ = makeTemporaryFile(target_);
    if (temporary_.empty()) return;
  }
  stream_.open(temporary_.empty() ? target_ : temporary_, std::ios::binary | std::ios::trunc);
  if (!stream_.is_open()) discard();
}

BookOutput::~BookOutput() {
  stream_.close();
  discard();
}

bool BookOutput::commit() {
  stream_.close();
  std::error_code error;
  if (stream_ && !temporary_.empty()) fs::rename(pathOf(temporary_), pathOf(target_), error);
  if (!stream_ || error) {
    discard();
    return false;
  }
  forgetTemporaryFile(temporary_);
  temporary_.clear();
  return true;
}

void BookOutput::discard() {
  if (temporary_.empty()) return;
  std::error_code ignored;
  fs::remove(pathOf(temporary_), ignored);
  forgetTemporaryFile(temporary_);
  temporary_.clear();
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return fs::equivalent(pathOf(a), pathOf(b), error) && !error;
}

}  // namespace ombrin
