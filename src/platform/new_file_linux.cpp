#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/new_file.h"

namespace ombrin {

NewFile createNewFile(const std::string& path) {
  constexpr mode_t READ_AND_WRITE = 0666;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, READ_AND_WRITE);
  if (file < 0) return errno == EEXIST ? NewFile::EXISTS : NewFile::FAILED;
  close(file);
  return NewFile::CREATED;
}

}  // namespace ombrin
