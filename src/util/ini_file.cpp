#include "util/ini_file.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "util/file_system.h"
#include "util/text_file.h"

namespace ombrin {

namespace {

std::string_view trimSpaces(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

bool IniFile::load(const std::string& path) {
  if (!fileExists(path)) return false;
  const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(path.c_str(), "rb"));
  if (stream == nullptr) return false;
  TextFile file(stream.get());
  while (const auto line = file.readLine()) readLine(*line);
  return std::ferror(stream.get()) == 0;
}

void IniFile::readLine(std::string_view line) {
  if (line.starts_with('#')) return;
  const std::size_t equals = line.find('=');
  // The emptiness of a value is judged before trimming: "key= " sets an empty value on purpose.
  if (equals == std::string_view::npos || equals + 1 == line.size()) return;
  const std::string_view key = trimSpaces(line.substr(0, equals));
  const RefString value(trimSpaces(line.substr(equals + 1)));

  const auto known = std::find_if(entries_.begin(), entries_.end(),
                                  [key](const Entry& entry) { return entry.key == key; });
  if (known != entries_.end()) {
    known->value = value;
  } else {
    entries_.push_back({key, value});
  }
}

RefString IniFile::get(std::string_view key) const {
  for (const Entry& entry : entries_) {
    if (entry.key == key) return entry.value;
  }
  return {};
}

}  // namespace ombrin
