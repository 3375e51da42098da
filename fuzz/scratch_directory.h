#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "fuzz_input.h"

namespace ombrin {

// A temporary directory of this process's own, for all files that inputs name or cause.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    path_ = std::filesystem::temp_directory_path() / "ombrin-fuzz-XXXXXX";
    require(mkdtemp(path_.data()) != nullptr, "there is a temporary directory");
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& path() const { return path_; }
  std::string pathOf(std::string_view name) const { return path_ + '/' + std::string(name); }

  // The new file is another one than whoever holds the old one open or mapped sees.
  void write(std::string_view name, std::string_view bytes) const {
    std::error_code ignored;
    std::filesystem::remove(pathOf(name), ignored);
    std::ofstream file(pathOf(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    require(file.good(), "a file can be written");
  }
  void clear() const {
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      std::filesystem::remove_all(entry.path());
    }
  }

 private:
  std::string path_;
};

// Makes it the working directory while this lives. The fuzzer's own paths are relative to another.
class WorkingIn {
 public:
  explicit WorkingIn(const ScratchDirectory& directory) : start_(std::filesystem::current_path()) {
    std::filesystem::current_path(directory.path());
  }
  WorkingIn(const WorkingIn&) = delete;
  WorkingIn& operator=(const WorkingIn&) = delete;
  ~WorkingIn() {
    std::error_code ignored;
    std::filesystem::current_path(start_, ignored);
  }

 private:
  std::filesystem::path start_;
};

}  // namespace ombrin
