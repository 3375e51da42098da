#include "library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "temporary_directory.h"

namespace bitbase_test {

using ombrin::TemporaryDirectory;

namespace {

// The path of something that the tests of this process write; all of it goes when they end.
std::string workPath(const std::string& name) {
  static const TemporaryDirectory DIRECTORY;
  return DIRECTORY.path() / name;
}

// One for all libraries: a function that is told something knows not by which.
std::vector<std::string> lines;

}  // namespace

Query Query::of(std::string_view fen) {
  Query query;
  std::size_t count = 0;
  int file = 0;
  int rank = 7;
  for (const char c : fen.substr(0, fen.find(' '))) {
    const std::size_t code = std::string_view("  QRBNP qrbnp").find(c);
    if (c == '/') {
      file = 0;
      --rank;
    } else if (c >= '1' && c <= '8') {
      file += c - '0';
    } else {
      const int square = file++ + 8 * rank;
      if (c == 'K' || c == 'k') {
        query.king[c == 'k'] = square;
      } else {
        query.men.at(count++) = {static_cast<int>(code), square};
      }
    }
  }
  query.side = fen.substr(fen.find(' ') + 1).front() == 'b';
  return query;
}

Library::Library(const std::string& directory) {
  const std::string path = directory + "/egbbdll.dll";
  std::filesystem::copy_file(OMBRIN_BITBASE_LIBRARY, path,
                             std::filesystem::copy_options::skip_existing);
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  EXPECT_NE(handle, nullptr) << dlerror();
  load_ = reinterpret_cast<decltype(load_)>(dlsym(handle, "load_egbb_5men"));
  probe_ = reinterpret_cast<decltype(probe_)>(dlsym(handle, "probe_egbb_5men"));
  const auto setLog =
      reinterpret_cast<void (*)(void (*)(const char*))>(dlsym(handle, "log_egbb_5men"));
  setLog([](const char* line) { lines.emplace_back(line); });
}

std::vector<std::string> Library::takeLog() const {
  return std::exchange(lines, {});
}

int Library::probe(const Query& query) const {
  const auto& [first, second, third] = query.men;
  return probe_(query.side, query.king[0], query.king[1], first[0], first[1], second[0], second[1],
                third[0], third[1]);
}

std::string makeDirectory(const std::string& name) {
  std::filesystem::create_directories(workPath(name));
  return workPath(name);
}

std::string generate(const std::string& arguments) {
  const std::string output = workPath("output");
  const std::string command =
      std::string("'") + OMBRIN_BITBASE_GENERATOR + "' --threads 2 " + arguments + " > " + output;
  const bool hasFailed = std::system(command.c_str()) != 0;
  std::ostringstream text;
  text << (hasFailed ? "failed\n" : "") << std::ifstream(output).rdbuf();
  return text.str();
}

const std::string& tables() {
  static const std::string DIRECTORY = [] {
    std::string directory = makeDirectory("tables");
    EXPECT_EQ(generate(directory + " " + std::string(MATERIALS)).find("failed"), std::string::npos);
    return directory;
  }();
  return DIRECTORY;
}

}  // namespace bitbase_test
