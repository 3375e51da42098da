#include "util/ref_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

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
  struct Case {
    std::size_t from, to;
    std::string_view expected;
  };
  for (const Case& c : {Case{0, 5, {"ab\0cd", 5}}, Case{1, 99, {"b\0cd", 4}}, Case{2, 3, {"\0", 1}},
                        Case{3, 3, ""}, Case{4, 2, ""}, Case{5, 9, ""}, Case{99, 100, ""}}) {
    EXPECT_EQ(text.substring(c.from, c.to), c.expected) << c.from << ".." << c.to;
  }
  EXPECT_TRUE(RefString(static_cast<const char*>(nullptr)).empty());
}

TEST(ToInt, ReadsAsTheCLibraryDoesAndStopsAtTheEndsOfTheRange) {
  struct Case {
    const char* text;
    int expected;
  };
  for (const Case& c : {Case{"", 0}, Case{"x1", 0}, Case{" \t\n-12x", -12}, Case{"+7 8", 7},
                        Case{"- 5", 0}, Case{"--5", 0}, Case{"007", 7}, Case{"2147483647", INT_MAX},
                        Case{"2147483648", INT_MAX}, Case{"-2147483648", INT_MIN},
                        Case{"-2147483649", INT_MIN}, Case{"99999999999999999999", INT_MAX},
                        Case{"-99999999999999999999", INT_MIN}, Case{"2147483640", 2147483640}}) {
    EXPECT_EQ(toInt(c.text), c.expected) << c.text;
  }
}

}  // namespace
}  // namespace ombrin
