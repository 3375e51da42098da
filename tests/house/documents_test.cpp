// Keeps the documents in step with the program and with each other.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

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

Names keysOfTheProgram() {
  Names keys =
      namesIn(textOf(ROOT / "src/shell/engine.cpp"), R"re((?:get|setting)\("([a-z]+\.[a-z]+)")re");
  for (const std::string group : {"play", "build"}) {
    keys.merge(namesIn(textOf(ROOT / "src/book" / (group + "_settings.cpp")),
                       R"re(\w+\("([a-z]+)")re", "book." + group + "."));
  }
  return keys;
}

TEST(Documents, NameEveryKeyOfTheIniFile) {
  constexpr char KEY[] = R"(\b((?:book|uci|winboard|tt|search|egbb|machine)(?:\.[a-z]+)+)\b)";
  const Names keys = keysOfTheProgram();
  EXPECT_GE(keys.size(), 36U);
  EXPECT_EQ(namesIn(textOf(ROOT / "examples/ombrin.ini"), R"(\n#([a-z.]+)=)"), keys);
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
