#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/new_file.h"

namespace ombrin {

NewFile createNewFile(const std::string& path) {
  const int file =
      _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  if (file < 0) return errno == EEXIST ? NewFile::EXISTS : NewFile::FAILED;
  _close(file);
  return NewFile::CREATED;
}

}  // namespace ombrin
