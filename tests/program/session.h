// The built program in a directory of its own, spoken to line by line.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/child_process.h"

namespace ombrin {

using Lines = std::vector<std::string>;

// The program under test: the built one, or what the environment names instead, such as a script
// that runs one built for another system.
inline std::string testedProgram() {
  const char* const other = std::getenv("OMBRIN_TESTED_PROGRAM");
  return other != nullptr ? other : OMBRIN_PROGRAM;
}

class Session {
 public:
  static constexpr std::chrono::milliseconds DEADLINE{60000};

  // `ini` becomes the directory's ombrin.ini when it is not empty.
  explicit Session(std::string_view ini = "") : directory_(makeDirectory()) {
    if (!ini.empty()) std::ofstream(directory_ / "ombrin.ini") << ini;
    process_.emplace(Lines{testedProgram()}, directory_.string(), true);
  }
  ~Session() {
    process_.reset();
    // Where a sanitizer writes once UCI mode has sent standard error away.
    expectNoReport(fileText("ombrin-0.5c-error.log"));
    std::filesystem::remove_all(directory_);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void send(std::string_view line) { process_->send(line); }
  void write(std::string_view text) { process_->write(text); }

  // The next line, without the prompts before it.
  std::string line() {
    std::optional<std::string> text = process_->readLine(DEADLINE);
    if (!text) {
      ADD_FAILURE() << "no line came";
      return {};
    }
    expectNoReport(*text);
    while (text->starts_with("% ")) text->erase(0, 2);
    return *text;
  }
  // Reads up to a line with that beginning, in which "#" stands for any digit; the last line is
  // that one.
  Lines linesUpTo(std::string_view beginning) {
    const auto fits = [](char expected, char found) {
      return expected == found || (expected == '#' && found >= '0' && found <= '9');
    };
    Lines lines;
    do {
      lines.push_back(line());
      if (testing::Test::HasFailure()) break;
    } while (lines.back().size() < beginning.size() ||
             !std::equal(beginning.begin(), beginning.end(), lines.back().begin(), fits));
    return lines;
  }
  std::string waitFor(std::string_view beginning) { return linesUpTo(beginning).back(); }
  // What the program answers to a line at once. For as long as WinBoard is not active.
  Lines ask(std::string_view line) { return askSynced(line, "isready", "readyok"); }
  // The same while WinBoard is active.
  Lines askWinboard(std::string_view line) { return askSynced(line, "ping 77", "pong 77"); }

  std::optional<int> exitStatus() { return process_->waitForExit(DEADLINE); }
  ChildProcess& process() { return *process_; }
  const std::filesystem::path& directory() const { return directory_; }
  // With line feeds for line ends, whatever the program's system has.
  std::string fileText(const std::string& name) const {
    std::ostringstream stream;
    stream << std::ifstream(directory_ / name).rdbuf();
    std::string text = stream.str();
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
    return text;
  }

 private:
  static std::filesystem::path makeDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "ombrin-test-XXXXXX").string();
    return mkdtemp(name.data());
  }
  static void expectNoReport(const std::string& text) {
    EXPECT_EQ(text.find("Sanitizer"), std::string::npos) << text;
  }
  Lines askSynced(std::string_view line, std::string_view sync, std::string_view answer) {
    send(line);
    send(sync);
    Lines lines = linesUpTo(answer);
    lines.pop_back();
    // As long as the log is standard output, it notes the answer behind it.
    if (!lines.empty() && lines.front().ends_with(":<--readyok")) lines.erase(lines.begin());
    return lines;
  }

  std::filesystem::path directory_;
  std::optional<ChildProcess> process_;
};

inline bool contains(const Lines& lines, std::string_view part) {
  for (const std::string& line : lines) {
    if (line.find(part) != std::string::npos) return true;
  }
  return false;
}

inline std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace ombrin
