// The operating system's part: files that are read here and there, and the library's stay in
// memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace bitbases {

// A file that is open for reading as long as the object lives. Any number of threads may read; what
// becomes of the file meanwhile is no more than a read that fails.
class File {
 public:
  explicit File(const std::string& path);
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // Is it open, and a regular file?
  bool isOpen() const;
  // When it was opened.
  std::uint64_t size() const { return size_; }
  // Fills `bytes` from that place on; false when there are not so many, or at an error.
  bool read(std::uint64_t offset, std::span<std::byte> bytes) const;

 private:
  std::intptr_t handle_;
  std::uint64_t size_ = 0;
};

// Keeps the library that this code is in loaded for the rest of the process, whoever closes it.
void stayLoaded();

}  // namespace bitbases
