#include "util/scan.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>

namespace ombrin {
namespace {

TEST(Scan, NumbersAreTakenFromTheFront) {
  using Limits = std::numeric_limits<std::int64_t>;
  const struct {
    const char* text;
    std::optional<std::int64_t> number;
    const char* rest;
    int nearest;
  } cases[] = {
      {"12", 12, "", 12},
      {" \t\n-7 8", -7, " 8", -7},
      {"+08:30", 8, ":30", 8},
      {"0x10", 0, "x10", 0},
      {"2147483648", 2147483648, "", INT_MAX},
      {"-2147483649", -2147483649, "", INT_MIN},
      {"99999999999999999999 1", Limits::max(), " 1", INT_MAX},
      {"-99999999999999999999", Limits::min(), "", INT_MIN},
      {"", std::nullopt, "", 0},
      {" x", std::nullopt, " x", 0},
      {"- 5", std::nullopt, "- 5", 0},
      {"--5", std::nullopt, "--5", 0},
      {"+-5", std::nullopt, "+-5", 0},
  };
  for (const auto& [text, number, rest, nearest] : cases) {
    std::string_view view = text;
    EXPECT_EQ(takeNumber(view), number) << text;
    EXPECT_EQ(view, rest);
    EXPECT_EQ(toInt(text), nearest) << text;
  }
}

TEST(Scan, DecimalFractionsAreNumbersAndNothingElseIs) {
  const struct {
    const char* text;
    std::optional<double> number;
    const char* rest;
  } cases[] = {
      {" +5.0%", 5, "%"},
      {"-.25 1", -0.25, " 1"},
      {"5,5", 5, ",5"},
      {"2.", 2, ""},
      {"1e3", 1, "e3"},
      {"nan", std::nullopt, "nan"},
      {"-inf", std::nullopt, "-inf"},
      {".", std::nullopt, "."},
      {"--1", std::nullopt, "--1"},
      {"", std::nullopt, ""},
  };
  for (const auto& [text, number, rest] : cases) {
    std::string_view view = text;
    EXPECT_EQ(takeDecimal(view), number) << text;
    EXPECT_EQ(view, rest);
  }
  const std::string huge(400, '9');
  std::string_view view = huge;
  EXPECT_EQ(takeDecimal(view), static_cast<double>(std::numeric_limits<std::int64_t>::max()));
}

TEST(Scan, AWordThatIsTooLongIsTwo) {
  std::string_view text = "\tone  extraordinary\r ";
  EXPECT_EQ(takeWord(text), "one");
  EXPECT_EQ(takeWord(text, 8), "extraord");
  EXPECT_EQ(takeWord(text, 8), "inary");
  EXPECT_EQ(takeWord(text), "");
}

}  // namespace
}  // namespace ombrin
