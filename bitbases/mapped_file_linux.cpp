#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "mapped_file.h"

namespace bitbases {

std::span<const std::byte> mapFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return {};
  struct stat status {};
  void* memory = MAP_FAILED;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
    memory =
        mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_SHARED, file, 0);
  }
  close(file);
  if (memory == MAP_FAILED) return {};
  return {static_cast<const std::byte*>(memory), static_cast<std::size_t>(status.st_size)};
}

void unmapFile(std::span<const std::byte> bytes) {
  if (!bytes.empty()) munmap(const_cast<std::byte*>(bytes.data()), bytes.size());
}

// The linker has marked the library so.
void stayLoaded() {}

}  // namespace bitbases
