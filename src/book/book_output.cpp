#include "book/book_output.h"

#include <filesystem>

#include "util/file_system.h"

namespace ombrin {

namespace fs = std::filesystem;

BookOutput::BookOutput(const std::string& target) : target_(target) {
  std::error_code error;
  const fs::file_status status = fs::status(pathOf(target_), error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    written_ = target_;
  } else {
    // A link stays a link: what it points to is replaced.
    const fs::path path = pathOf(target_);
    if (fs::is_symlink(path, error)) target_ = nameOf(fs::weakly_canonical(path, error));
    written_ = target_ + ".tmp";
  }
  stream_.open(written_, std::ios::binary | std::ios::trunc);
}

BookOutput::~BookOutput() {
  if (!isOpen()) return;
  stream_.close();
  std::error_code ignored;
  if (written_ != target_) fs::remove(pathOf(written_), ignored);
}

bool BookOutput::commit() {
  stream_.close();
  std::error_code error;
  if (stream_ && written_ != target_) fs::rename(pathOf(written_), pathOf(target_), error);
  if (stream_ && !error) return true;
  std::error_code ignored;
  if (written_ != target_) fs::remove(pathOf(written_), ignored);
  return false;
}

}  // namespace ombrin
