// Keeps the documents in step with the program and with each other.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include "book/build_settings.h"
#include "book/play_settings.h"
#include "shell/engine_settings.h"

namespace ombrin {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

const fs::path ROOT = OMBRIN_SOURCE_DIR;

std::string textOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

// What the pattern's first group matches anywhere in the text, with `prefix` in front.
Names namesIn(const std::string& text, const std::string& pattern, const std::string& prefix = "") {
  const std::regex expression(pattern);
  Names names;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
       ++match) {
    names.insert(prefix + (*match)[1].str());
  }
  return names;
}

// The keys that the program reads, as commented lines with their defaults.
template <typename Settings>
void addKeys(std::span<const IniRow<Settings>> rows, Names& keys, Names& lines) {
  for (const IniRow<Settings>& row : rows) {
    keys.insert(std::string(row.key));
    lines.insert("#" + std::string(row.key) + "=" + std::string(row.absent));
  }
}

TEST(Documents, NameEveryKeyOfTheIniFile) {
  Names keys;
  Names lines;
  addKeys(EngineSettings::rows(), keys, lines);
  addKeys(PlaySettings::criteria(), keys, lines);
  addKeys(PlaySettings::weights(), keys, lines);
  addKeys(BuildSettings::rows(), keys, lines);
  addKeys(BuildSettings::extraRows(), keys, lines);
  EXPECT_EQ(namesIn(textOf(ROOT / "examples/ombrin.ini"), R"(\n(#[a-z.]+=.*))"), lines);
  constexpr char KEY[] = R"(\b((?:book|uci|winboard|tt|search|egbb|machine)(?:\.[a-z]+)+)\b)";
  for (const char* document : {"docs/manual.md", "man/ombrin.6"}) {
    const Names named = namesIn(textOf(ROOT / document), KEY);
    for (const std::string& key : keys) {
      EXPECT_TRUE(named.contains(key)) << document << " is silent about " << key;
    }
  }
}

TEST(Documents, LinkToWhatIsThere) {
  std::set<fs::path> documents = {ROOT / "README.md", ROOT / "CHANGELOG.md",
                                  ROOT / "CONTRIBUTING.md"};
  for (const auto& entry : fs::directory_iterator(ROOT / "docs")) {
    if (entry.path().extension() == ".md") documents.insert(entry.path());
  }
  for (const fs::path& document : documents) {
    for (const std::string& link : namesIn(textOf(document), R"(\]\(([^)#:]+)(?:#[^)]*)?\))")) {
      EXPECT_TRUE(fs::exists(document.parent_path() / link)) << document << ": " << link;
    }
  }
}

}  // namespace
}  // namespace ombrin
