// Keeps the picture of the house true: which folder may include which, no circles between files,
// and the operating system and the processor behind one door.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace ombrin {
namespace {

namespace fs = std::filesystem;

// The files of src/ by their path below it, such as "util/log.h", with their contents.
using Sources = std::map<std::string, std::string>;
using Findings = std::vector<std::string>;

// What each folder may use, beside itself.
using Arrows = std::map<std::string, std::set<std::string>>;

std::string textOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The arrows in a document: `row` matches a folder's line, the folder in it, and what it may use.
Arrows arrowsIn(const char* document, const char* row) {
  std::string text = textOf(fs::path(OMBRIN_SOURCE_DIR) / document);
  std::erase(text, ',');
  Arrows arrows;
  for (std::smatch line; std::regex_search(text, line, std::regex(row)); text = line.suffix()) {
    std::istringstream used(line[2]);
    arrows[line[1]] = {std::istream_iterator<std::string>(used), {}};
  }
  return arrows;
}

const Arrows MAY_USE = arrowsIn("CMakeLists.txt", R"(\nombrin_library\((\w+)([\w ]*)\))");

Sources readSources() {
  const fs::path root = fs::path(OMBRIN_SOURCE_DIR) / "src";
  Sources sources;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    sources[fs::relative(entry.path(), root).generic_string()] = textOf(entry.path());
  }
  return sources;
}

// The names in the #include lines of `text`, with the bracket or quote in front.
std::vector<std::string> includesOf(const std::string& text) {
  static const std::regex INCLUDE(R"((?:^|\n)[ \t]*#[ \t]*include[ \t]*([<"][^>"\n]*))");
  std::vector<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), INCLUDE), end; match != end; ++match) {
    names.push_back((*match)[1]);
  }
  return names;
}

std::string folderOf(const std::string& file) {
  return file.substr(0, file.find('/'));
}

Findings forbiddenArrows(const Sources& sources) {
  Findings findings;
  for (const auto& [file, text] : sources) {
    const auto allowed = MAY_USE.find(folderOf(file));
    if (allowed == MAY_USE.end()) {
      findings.push_back(file + ": unknown folder");
      continue;
    }
    for (const std::string& include : includesOf(text)) {
      if (include[0] != '"') continue;
      const std::string used = include.substr(1);
      if (!sources.contains(used)) {
        findings.push_back(file + ": \"" + used + "\" is no file of src/");
      } else if (folderOf(used) != allowed->first && !allowed->second.contains(folderOf(used))) {
        findings.push_back(file + ": may not use " + used);
      }
    }
  }
  return findings;
}

Findings circles(const Sources& sources) {
  Findings findings;
  std::set<std::string> done;
  std::vector<std::string> path;
  const std::function<void(const std::string&)> visit = [&](const std::string& file) {
    const auto seen = std::find(path.begin(), path.end(), file);
    if (seen != path.end()) {
      std::string circle;
      for (auto step = seen; step != path.end(); ++step) circle += *step + " -> ";
      findings.push_back(circle + file);
      return;
    }
    const auto source = sources.find(file);
    if (source == sources.end() || !done.insert(file).second) return;
    path.push_back(file);
    for (const std::string& include : includesOf(source->second)) visit(include.substr(1));
    path.pop_back();
  };
  for (const auto& [file, text] : sources) visit(file);
  return findings;
}

Findings systemsOutsidePlatform(const Sources& sources) {
  static const std::regex SYSTEM_HEADER(
      "<((sys|linux|asm|arpa|net|netinet)/.*"
      "|(aio|dirent|dlfcn|fcntl|glob|poll|pthread|sched|semaphore|spawn|strings|syslog|termios"
      "|ucontext|unistd|direct|io|process|windows|winsock2?|\\w*intrin)\\.h)",
      std::regex::icase);
  static const std::regex PROCESSOR(
      R"(\basm\b|__builtin_(ia32|cpu)|gnu::target|__(x86|i386|arm|aarch|POPCNT|SSE|AVX|BMI))");
  Findings findings;
  for (const auto& [file, text] : sources) {
    if (folderOf(file) == "platform") continue;
    for (const std::string& include : includesOf(text)) {
      if (std::regex_match(include, SYSTEM_HEADER)) {
        findings.push_back(file + ": may not use " + include + ">");
      }
    }
    std::smatch found;
    if (std::regex_search(text, found, PROCESSOR)) {
      findings.push_back(file + ": may not use " + found.str());
    }
  }
  return findings;
}

TEST(House, IsInOrder) {
  const Sources sources = readSources();
  ASSERT_GT(sources.size(), 30U);
  EXPECT_EQ(forbiddenArrows(sources), Findings());
  EXPECT_EQ(circles(sources), Findings());
  EXPECT_EQ(systemsOutsidePlatform(sources), Findings());
  EXPECT_EQ(arrowsIn("docs/architecture.md", R"(\n\| `(\w+)/` \|[^|]*\|([\w ]*)\|)"), MAY_USE);
}

// A crooked house, to see that the checks above would notice.
TEST(House, TheChecksFindWhatIsWrong) {
  const Sources crooked = {
      {"attic/box.h", ""},
      {"board/board.h", "#include \"eval/evaluator.h\"\n"},
      {"eval/evaluator.h", "#include \"board/board.h\"\n"},
      {"util/a.h", " # include <unistd.h>\n#include <cstdio>\n#include \"b.h\"\n"},
      {"util/own.h", "#include \"util/own.h\"\n#include <sys/resource.h>\n"},
      {"util/wait.h", "void wait() { __builtin_ia32_pause(); }\n"},
      {"platform/tick.cpp", "#include <unistd.h>\nvoid nap() { asm(\"nop\"); }\n"},
  };
  EXPECT_EQ(forbiddenArrows(crooked),
            (Findings{"attic/box.h: unknown folder", "board/board.h: may not use eval/evaluator.h",
                      "util/a.h: \"b.h\" is no file of src/"}));
  EXPECT_EQ(circles(crooked), (Findings{"board/board.h -> eval/evaluator.h -> board/board.h",
                                        "util/own.h -> util/own.h"}));
  EXPECT_EQ(systemsOutsidePlatform(crooked), (Findings{"util/a.h: may not use <unistd.h>",
                                                       "util/own.h: may not use <sys/resource.h>",
                                                       "util/wait.h: may not use __builtin_ia32"}));
}

}  // namespace
}  // namespace ombrin
