#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file.h"

namespace bitbases {

namespace {

constexpr int CLOSED = -1;

}  // namespace

File::File(const std::string& path)
    // A pipe of that name must not keep the caller waiting.
    : handle_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (!isOpen()) return;
  struct stat status {};
  const int file = static_cast<int>(handle_);
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
    size_ = static_cast<std::uint64_t>(status.st_size);
  } else {
    close(file);
    handle_ = CLOSED;
  }
}

File::~File() {
  if (isOpen()) close(static_cast<int>(handle_));
}

bool File::isOpen() const {
  return handle_ != CLOSED;
}

bool File::read(std::uint64_t offset, std::span<std::byte> bytes) const {
  while (!bytes.empty()) {
    const ssize_t count =
        pread(static_cast<int>(handle_), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    offset += static_cast<std::uint64_t>(count);
  }
  return true;
}

// The linker has marked the library so.
void stayLoaded() {}

}  // namespace bitbases
