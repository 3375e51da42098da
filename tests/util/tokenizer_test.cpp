#include "util/tokenizer.h"

#include <gtest/gtest.h>

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
  using Tokens = std::vector<std::string>;
  struct Case {
    const char* text;
    Tokens expected;
  };
  const Case cases[] = {
      {"", {}},
      {"go", {"go"}},
      {"go  wtime 1000", {"go", "wtime", "1000"}},
      {"a\tb", {"a", "b"}},
      {"\ta", {"", "a"}},
      {"a\t\tb", {"a", "", "b"}},
      {"a \tb", {"a", "", "b"}},
      {"a\t b", {"a", "", "b"}},
      {"  a  ", {"", "a"}},
      {"\t", {""}},
  };
  for (const Case& c : cases) {
    Tokenizer tokenizer;
    tokenizer.setText(c.text);
    EXPECT_EQ(tokensOf(tokenizer), c.expected) << '"' << c.text << '"';
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
