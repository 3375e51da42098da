#include "util/file_system.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "util/print.h"

namespace ombrin {

namespace {

bool makeDirectory(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directory(path, error);
  if (!error || std::filesystem::is_directory(path)) return true;
  print(stderr, "FileSystem: error %i creating directory: '%s'\n", error.value(), path.c_str());
  return false;
}

}  // namespace

bool makeDirectories(std::string_view path) {
  // Created with the system's own separator, whichever the caller used.
  std::string made;
  for (const char c : path) {
    const bool separates = c == '/' || c == '\\';
    if (separates && !made.empty() && !makeDirectory(made)) return false;
    made += separates ? '/' : c;
  }
  return made.empty() || made.back() == '/' || makeDirectory(made);
}

bool fileExists(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(path.c_str(), "r"),
                                                               &std::fclose);
  return stream != nullptr;
}

std::string currentDirectory() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

}  // namespace ombrin
