#include "book/build_sources.h"

#include <algorithm>
#include <filesystem>

#include "book/book_kind.h"
#include "pgn/compressed_source.h"
#include "util/file_system.h"
#include "util/print.h"

namespace ombrin {

namespace fs = std::filesystem;

namespace {

bool isDirectory(const std::string& name) {
  std::error_code ignored;
  return fs::is_directory(pathOf(name), ignored);
}

bool isBookName(const std::string& name) {
  return hasEnding(name, ".obk") || hasEnding(name, ".bin");
}

std::string_view withoutCompression(std::string_view name) {
  const Compression* const compression = compressionOfName(name);
  if (compression != nullptr) name.remove_suffix(compression->ending.size());
  return name;
}

BuildSource sourceOf(const std::string& name) {
  std::error_code error;
  const fs::path path = pathOf(name);
  const bool isFile = fs::is_regular_file(path, error);
  const std::uint64_t bytes = isFile ? fs::file_size(path, error) : 0;
  return {name, error ? 0 : bytes};
}

std::vector<BuildSource> collectionsIn(const std::string& directory) {
  std::vector<BuildSource> found;
  std::error_code error;
  for (fs::directory_iterator entry(pathOf(directory), error), end; entry != end && !error;
       entry.increment(error)) {
    const std::string name = nameOf(entry->path());
    if (hasEnding(withoutCompression(name), ".pgn") && !isDirectory(name)) {
      found.push_back(sourceOf(name));
    }
  }
  std::ranges::sort(found, {}, &BuildSource::name);
  return found;
}

// A pipe is not touched: who opens it reads it.
bool canBeRead(const std::string& name) {
  if (name == "-") return true;
  std::error_code ignored;
  const fs::path path = pathOf(name);
  return fs::is_regular_file(path, ignored) ? fileExists(name) : fs::exists(path, ignored);
}

}  // namespace

std::uint64_t BuildSources::bytes() const {
  std::uint64_t sum = 0;
  for (const BuildSource& file : files) {
    if (file.bytes == 0) return 0;
    sum += file.bytes;
  }
  return sum;
}

BuildSources findSources(const std::vector<std::string>& names) {
  BuildSources sources;
  for (const std::string& name : names) {
    std::vector<BuildSource> found{sourceOf(name)};
    if (isDirectory(name)) {
      found = collectionsIn(name);
      if (found.empty()) print(stdout, "no pgn-files in directory: %s\n", name.c_str());
      if (found.empty()) return {};
    }
    for (BuildSource& source : found) {
      if (!canBeRead(source.name)) {
        print(stdout, "could not open pgn-file: %s\n", source.name.c_str());
        return {};
      }
      sources.files.push_back(std::move(source));
    }
  }
  const auto books = std::ranges::count_if(
      sources.files, [](const BuildSource& source) { return isBookName(source.name); });
  sources.areBooks = books > 0;
  if (books > 0 && static_cast<std::size_t>(books) < sources.files.size()) {
    print(stdout, "books and game collections cannot be put together\n");
    return {};
  }
  return sources;
}

bool isSourceName(const std::string& name) {
  return name == "-" || isBookName(name) || hasEnding(name, ".pgn") ||
         compressionOfName(name) != nullptr || isDirectory(name);
}

std::string bookNameFor(std::string_view sourceName) {
  while (sourceName.size() > 1 && (sourceName.back() == '/' || sourceName.back() == '\\')) {
    sourceName.remove_suffix(1);
  }
  const std::size_t slash = sourceName.find_last_of("/\\");
  if (slash != std::string_view::npos) sourceName.remove_prefix(slash + 1);
  sourceName = withoutCompression(sourceName);
  const std::string_view bare = sourceName.substr(0, sourceName.rfind('.'));
  return std::string(bare.empty() || bare == "-" ? "book" : bare) + ".obk";
}

}  // namespace ombrin
