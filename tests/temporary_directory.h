#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace ombrin {

// An empty directory that the test works in while this lives; removed with all that is in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() : path_(create()) { std::filesystem::current_path(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(start_, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  static std::filesystem::path create() {
    std::string name = std::filesystem::temp_directory_path() / "ombrin_test_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    return name;
  }

  const std::filesystem::path start_ = std::filesystem::current_path();
  const std::filesystem::path path_;
};

}  // namespace ombrin
