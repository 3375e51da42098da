#include "record.h"

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace bitbases {

namespace {

constexpr const char* TITLE =
    "#        White to move:                   Black to move:                   longest\n"
    "# table  won        drawn      lost       won        drawn      lost       chain bytes    "
    "sum      seconds\n";

std::string sumOf(const TableFile& file) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%08" PRIx32, file.checksum());
  return text.data();
}

}  // namespace

Record::Record(const std::string& directory) : path_(directory + "/tables.txt") {
  std::ifstream file(path_);
  for (std::string line; std::getline(file, line);) {
    const std::string name = line.substr(0, line.find(' '));
    if (const auto material = Material::fromName(name)) {
      lines_[{material->men(), name}] = line;
    }
  }
}

bool Record::has(const Material& material, const TableFile& file) const {
  const auto found = lines_.find({material.men(), material.name()});
  if (found == lines_.end()) return false;
  std::istringstream line(found->second);
  std::string word;
  for (int i = 0; i < 10; ++i) line >> word;
  return word == sumOf(file);
}

bool Record::add(const Material& material, const TableFile& file, const Totals& totals,
                 double seconds) {
  std::array<char, 200> line;
  int length = std::snprintf(line.data(), line.size(), "%-8s", material.name().c_str());
  for (const std::size_t side : {0U, 1U}) {
    for (const auto& number : {totals.won[side], totals.drawn[side], totals.lost[side]}) {
      length += std::snprintf(line.data() + length, line.size() - length, " %-10" PRIu64, number);
    }
  }
  length += std::snprintf(line.data() + length, line.size() - length, " %-5d %-8" PRIu64 " %s",
                          file.longestChain(), file.size(), sumOf(file).c_str());
  if (seconds > 0) std::snprintf(line.data() + length, line.size() - length, " %.1f", seconds);
  lines_[{material.men(), material.name()}] = line.data();

  const std::string unfinished = path_ + ".part";
  std::ofstream text(unfinished, std::ios::trunc);
  text << TITLE;
  for (const auto& [key, known] : lines_) text << known << '\n';
  text.close();
  std::error_code error;
  if (text.good()) std::filesystem::rename(unfinished, path_, error);
  return text.good() && !error;
}

}  // namespace bitbases
