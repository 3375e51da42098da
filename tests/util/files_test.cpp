#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "temporary_directory.h"
#include "util/file_system.h"
#include "util/ini_file.h"
#include "util/log.h"
#include "util/text_file.h"

namespace ombrin {
namespace {

namespace fs = std::filesystem;

// Works in an empty directory of its own, with the log going to the file "log" there.
class FilesTest : public testing::Test {
 protected:
  void SetUp() override {
    log_ = std::fopen("log", "w+b");
    ASSERT_NE(log_, nullptr);
    logFile = log_;
  }
  void TearDown() override {
    logFile = stdout;
    std::fclose(log_);
  }

  static void write(const std::string& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
  }
  static std::string contents(const std::string& name) {
    flushLog();
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static std::vector<std::string> linesOf(const std::string& bytes) {
    write("text", bytes);
    std::FILE* const stream = std::fopen("text", "rb");
    TextFile file(stream);
    std::vector<std::string> lines;
    while (const auto line = file.readLine()) lines.emplace_back(*line);
    EXPECT_EQ(file.readLine(), std::nullopt);
    EXPECT_TRUE(file.atEnd());
    std::fclose(stream);
    return lines;
  }

  const TemporaryDirectory directory_;
  std::FILE* log_ = nullptr;
};

TEST_F(FilesTest, LineEnds) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(linesOf(""), Lines());
  EXPECT_EQ(linesOf("\n\r\n"), (Lines{"", ""}));
  EXPECT_EQ(linesOf("a\r\nb\rc\nd\r\r\ne\r"), (Lines{"a", "b\rc", "d\r", "e\r"}));
  EXPECT_EQ(linesOf(std::string("a\0b\n\0", 5)),
            (Lines{std::string("a\0b", 3), std::string(1, '\0')}));
}

TEST_F(FilesTest, LinesOfAnyBytesAndLengthsAreReadBack) {
  std::mt19937 random(1);
  std::vector<std::string> lines;
  std::string bytes;
  for (std::size_t length : {0, 126, 127, 128, 129, 255, 256, 1000, 1 << 20, 3}) {
    std::string line;
    while (line.size() < length) {
      const char c = static_cast<char>(random());
      if (c != '\n' && c != '\r') line += c;
    }
    lines.push_back(line);
    bytes += line + "\n";
  }
  EXPECT_EQ(linesOf(bytes), lines);
  bytes.pop_back();
  EXPECT_EQ(linesOf(bytes), lines);
  // A last line that fills the buffer exactly is not lost.
  EXPECT_EQ(linesOf(std::string(127, 'x')), std::vector{std::string(127, 'x')});
}

TEST_F(FilesTest, GrowthAndAMissingLineEndAreLogged) {
  linesOf(std::string(300, 'x') + "\nlast");
  const std::regex expected(
      "Textfile.readline\\(\\): reallocced size=256 addr=.*, n=127\n"
      "Textfile.readline\\(\\): reallocced size=512 addr=.*, n=255\n"
      "EOF n=4, size=512\n");
  EXPECT_TRUE(std::regex_match(contents("log"), expected)) << contents("log");
}

TEST_F(FilesTest, PeekDoesNotConsume) {
  std::FILE* const stream = std::tmpfile();
  std::fputs("ab\n", stream);
  std::rewind(stream);
  TextFile file(stream);
  EXPECT_EQ(file.peek(), 'a');
  EXPECT_FALSE(file.atEnd());
  EXPECT_EQ(file.readLine(), "ab");
  EXPECT_EQ(file.peek(), EOF);
  std::fclose(stream);
}

TEST_F(FilesTest, LogLevelsAndASilentLog) {
  constexpr LogChannel CHANNEL{"test"};
  logDebug(CHANNEL, "debug %i\n", 0);
  logInfo(CHANNEL, "info %i", 1);
  logWarn(CHANNEL, "warn %i\n", 2);
  logLevel = 3;
  logWarn(CHANNEL, "silent\n");
  logError(CHANNEL, "error %i\n", 3);
  logLevel = 0;
  logDebug(CHANNEL, "debug\n");
  logLevel = 1;
  logFile = nullptr;
  logError(CHANNEL, "nowhere\n");
  flushLog();
  logFile = log_;
  EXPECT_EQ(contents("log"), "info 1warn 2\nerror 3\ndebug\n");
}

TEST_F(FilesTest, IniLines) {
  const struct {
    std::string text;
    std::string entries;  // each as "key -> value", with a bar behind it
  } cases[] = {
      {"tt.cachemb = 64 ", "tt.cachemb -> 64|"},
      {"a=b=c\r\n #x=1\n", "a -> b=c|#x -> 1|"},
      {"key\t=1\nkey=   \n=x", "key\t -> 1|key -> | -> x|"},
      {"book.file=\nbook.file=x.obk", "book.file -> x.obk|"},
      {"\n#x=1\n[book]\nbook.file=\n", ""},
  };
  for (const auto& example : cases) {
    write("ini", example.text);
    IniFile ini;
    ASSERT_TRUE(ini.load("ini"));
    std::string found;
    for (const auto& entry : ini.entries()) {
      found += std::string(entry.key.view()) + " -> " + std::string(entry.value.view()) + "|";
    }
    EXPECT_EQ(found, example.entries);
  }
}

TEST_F(FilesTest, TheLastValueOfAnIniKeyWinsInTheFirstPlace) {
  write("ini", "threads=1\nbook=b\n");
  write("more", "Book=c\nthreads=4\n");
  IniFile ini;
  ASSERT_TRUE(ini.load("ini"));
  ASSERT_TRUE(ini.load("more"));
  ASSERT_EQ(ini.entries().size(), 3U);
  EXPECT_EQ(ini.entries()[0].key, "threads");
  EXPECT_EQ(ini.get("threads"), "4");
  EXPECT_TRUE(ini.get("threads").sharesTextWith(ini.entries()[0].value));
  EXPECT_EQ(ini.get("book"), "b");
  EXPECT_TRUE(ini.get("boo").empty());
  EXPECT_FALSE(ini.load("missing"));
  EXPECT_FALSE(ini.load("."));
  EXPECT_EQ(ini.entries().size(), 3U);
}

TEST_F(FilesTest, DirectoriesAreMadeAlongBothSeparators) {
  EXPECT_TRUE(makeDirectories("a/b\\c"));
  EXPECT_TRUE(fs::is_directory("a/b/c"));
  EXPECT_TRUE(makeDirectories("a/b/c"));
  EXPECT_TRUE(makeDirectories((directory_.path() / "d//e/").string()));
  EXPECT_TRUE(fs::is_directory("d/e"));
  EXPECT_TRUE(makeDirectories(""));
}

TEST_F(FilesTest, AFileIsNoDirectory) {
  write("file", "x");
  EXPECT_TRUE(fileExists("file"));
  EXPECT_FALSE(fileExists("missing"));
  EXPECT_FALSE(fileExists("."));
  EXPECT_TRUE(fs::equivalent(currentDirectory(), directory_.path()));
  testing::internal::CaptureStderr();
  EXPECT_FALSE(makeDirectories("file/below/deeper"));
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(report.starts_with("FileSystem: error ")) << report;
  EXPECT_TRUE(report.ends_with(" creating directory: 'file'\n")) << report;
}

}  // namespace
}  // namespace ombrin
