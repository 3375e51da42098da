#include "util/ref_string.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

namespace ombrin {
namespace {

TEST(RefString, AppendingToASharedTextLeavesTheOthersAlone) {
  RefString a("one");
  const RefString b = a;
  ASSERT_TRUE(a.sharesTextWith(b));
  a.append("");
  EXPECT_TRUE(a.sharesTextWith(b));
  a.append(" two");
  EXPECT_EQ(a, "one two");
  EXPECT_EQ(b, "one");
  EXPECT_EQ(a.length(), 7U);
}

TEST(RefString, AppendsAPartOfItself) {
  RefString alone("abc");
  alone.append(alone.view().substr(1));
  EXPECT_EQ(alone, "abcbc");
  RefString shared("abc");
  {
    const RefString other = shared;
    shared.append(other.view());
  }
  EXPECT_EQ(shared, "abcabc");
}

TEST(RefString, LiveStringsCountsTextsNotHolders) {
  const std::uint32_t before = liveStrings;
  {
    RefString a("text");
    RefString b = a;
    EXPECT_EQ(liveStrings, before + 1);
    b.append("s");
    EXPECT_EQ(liveStrings, before + 2);
    b = a;
    EXPECT_EQ(liveStrings, before + 1);
    a.clear();
    EXPECT_EQ(liveStrings, before + 2);
    EXPECT_EQ(b, "text");
  }
  EXPECT_EQ(liveStrings, before);
}

TEST(RefString, SubstringIsCutToTheText) {
  const RefString text(std::string_view("ab\0cd", 5));
  const std::tuple<std::size_t, std::size_t, std::string_view> cases[] = {
      {0, 5, {"ab\0cd", 5}}, {1, 99, {"b\0cd", 4}}, {2, 3, {"\0", 1}}, {4, 2, ""}, {99, 100, ""}};
  for (const auto& [from, to, expected] : cases) {
    EXPECT_EQ(text.substring(from, to), expected) << from << ".." << to;
  }
  EXPECT_TRUE(RefString(static_cast<const char*>(nullptr)).empty());
}

}  // namespace
}  // namespace ombrin
