#include "util/file_system.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "util/print.h"

namespace ombrin {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view SEPARATORS = "/\\";

bool makeDirectory(std::string_view path) {
  std::error_code error;
  fs::create_directory(pathOf(localPath(path)), error);
  if (!error) return true;
  print(stderr, "FileSystem: error %i creating directory: '%s'\n", error.value(),
        std::string(path).c_str());
  return false;
}

}  // namespace

std::string localPath(std::string_view name) {
  std::string local(name);
  for (std::size_t at = 0; (at = local.find_first_of(SEPARATORS, at)) != std::string::npos; ++at) {
    local[at] = static_cast<char>(fs::path::preferred_separator);
  }
  return local;
}

std::string_view lastPart(std::string_view name) {
  const std::size_t separator = name.find_last_of(SEPARATORS);
  return separator == std::string_view::npos ? name : name.substr(separator + 1);
}

bool makeDirectories(std::string_view path) {
  // A drive or another machine, where names begin with such, cannot be made.
  const std::size_t root = nameOf(pathOf(path).root_name()).size();
  std::size_t end = root;
  while (end < path.size()) {
    end = std::min(path.find_first_of(SEPARATORS, end), path.size());
    if (end > root && !makeDirectory(path.substr(0, end))) return false;
    ++end;
  }
  return true;
}

bool fileExists(const std::string& path) {
  // A directory can be opened on some systems, but never read.
  std::error_code error;
  if (fs::is_directory(pathOf(path), error)) return false;
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

std::string currentDirectory() {
  std::error_code error;
  return nameOf(fs::current_path(error));
}

}  // namespace ombrin
