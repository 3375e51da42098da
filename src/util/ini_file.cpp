#include "util/ini_file.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "util/text_file.h"

namespace ombrin {

namespace {

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

bool IniFile::load(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) return false;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(path.c_str(), "r"),
                                                               &std::fclose);
  if (!stream) return false;
  TextFile file(stream.get());
  while (const std::optional<std::string_view> line = file.readLine()) readLine(*line);
  return true;
}

void IniFile::readLine(std::string_view line) {
  if (line.empty() || line.front() == '#') return;
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || equals + 1 == line.size()) return;
  const std::string_view key = trimmed(line.substr(0, equals));
  const RefString value(trimmed(line.substr(equals + 1)));
  for (Entry& entry : entries_) {
    if (entry.key == key) {
      entry.value = value;
      return;
    }
  }
  entries_.push_back({key, value});
}

RefString IniFile::get(std::string_view key) const {
  for (const Entry& entry : entries_) {
    if (entry.key == key) return entry.value;
  }
  return {};
}

}  // namespace ombrin
