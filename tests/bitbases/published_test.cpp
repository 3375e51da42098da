// Do tables of five men agree with what is in books? They take too long to make for a test, so this
// one is for whoever has made them: the environment variable OMBRIN_EGBB_DIR names their directory.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "library.h"

namespace bitbase_test {
namespace {

int sign(int score) {
  return (score > 0) - (score < 0);
}

TEST(Published, ResultsAgree) {
  const char* const directory = std::getenv("OMBRIN_EGBB_DIR");
  if (directory == nullptr) GTEST_SKIP() << "OMBRIN_EGBB_DIR names no tables";
  const Library library(makeDirectory("published"));
  library.load(directory);
  library.takeLog();
  std::ifstream file(OMBRIN_SOURCE_DIR "/tests/bitbases/published.txt");
  int checked = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string men;
    std::string side;
    int result = 9;
    words >> men >> side >> result;
    if (men.empty() || men.front() == '#') continue;
    ASSERT_TRUE(result >= -1 && result <= 1) << line;
    const int score = library.probe(men + ' ' + side);
    if (score == NOT_HELD) continue;
    EXPECT_EQ(sign(score), result) << line;
    ++checked;
  }
  EXPECT_GT(checked, 0) << "of the positions' tables none is there";
  RecordProperty("checked", checked);
}

}  // namespace
}  // namespace bitbase_test
