#include "util/tokenizer.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace ombrin {
namespace {

std::vector<std::string> tokensOf(Tokenizer tokenizer) {
  std::vector<std::string> tokens;
  while (!tokenizer.atEnd()) tokens.emplace_back(tokenizer.nextToken().view());
  return tokens;
}

TEST(Tokenizer, SplitsAtTabsOneByOneAndAtRunsOfSpaces) {
  const std::map<const char*, std::vector<std::string>> cases = {
      {"", {}},
      {"go  wtime 1000", {"go", "wtime", "1000"}},
      {"a\tb", {"a", "b"}},
      {"\ta", {"", "a"}},
      {"a\t\tb", {"a", "", "b"}},
      {"a \tb", {"a", "", "b"}},
      {"a\t b", {"a", "", "b"}},
      {"  a  ", {"", "a"}},
  };
  for (const auto& [text, expected] : cases) {
    Tokenizer tokenizer;
    tokenizer.setText(text);
    EXPECT_EQ(tokensOf(tokenizer), expected) << '"' << text << '"';
  }
}

TEST(Tokenizer, RestIsWhatHasNotBeenConsumed) {
  Tokenizer tokenizer;
  tokenizer.setTrimmedText("   one  two\tthree ");
  EXPECT_EQ(tokenizer.rest(), "one  two\tthree ");
  EXPECT_EQ(tokenizer.nextToken(), "one");
  EXPECT_EQ(tokenizer.rest(), "two\tthree ");
  EXPECT_EQ(tokenizer.nextToken(), "two");
  EXPECT_EQ(tokenizer.nextToken(), "three");
  EXPECT_TRUE(tokenizer.atEnd());
  EXPECT_TRUE(tokenizer.rest().empty());
  EXPECT_TRUE(tokenizer.nextToken().empty());
}

TEST(Tokenizer, WithoutDelimitersTheWholeTextIsOneToken) {
  Tokenizer tokenizer("");
  tokenizer.setText("a b\tc");
  EXPECT_EQ(tokensOf(tokenizer), std::vector<std::string>{"a b\tc"});
}

}  // namespace
}  // namespace ombrin
