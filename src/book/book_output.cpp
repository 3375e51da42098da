#include "book/book_output.h"

#include <filesystem>

namespace ombrin {

namespace fs = std::filesystem;

BookOutput::BookOutput(const std::string& target) : target_(target) {
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    written_ = target_;
  } else {
    // A link stays a link: what it points to is replaced.
    if (fs::is_symlink(target_, error)) target_ = fs::weakly_canonical(target_, error).string();
    written_ = target_ + ".tmp";
  }
  stream_.open(written_, std::ios::binary | std::ios::trunc);
}

BookOutput::~BookOutput() {
  if (!isOpen()) return;
  stream_.close();
  std::error_code ignored;
  if (written_ != target_) fs::remove(written_, ignored);
}

bool BookOutput::commit() {
  stream_.close();
  std::error_code error;
  if (stream_ && written_ != target_) fs::rename(written_, target_, error);
  if (stream_ && !error) return true;
  std::error_code ignored;
  if (written_ != target_) fs::remove(written_, ignored);
  return false;
}

}  // namespace ombrin
