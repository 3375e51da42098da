#include "book/book_merge.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <set>

#include "book_samples.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

std::vector<BookEntry> randomBook(std::mt19937& random) {
  std::vector<BookEntry> entries;
  std::uint64_t key = 0;
  for (unsigned positions = random() % 40; positions > 0; --positions) {
    key += 1 + random() % 3;
    for (unsigned move = 0; move <= random() % 4; ++move) {
      entries.push_back(makeEntry(key, "a1a1", 1 + random() % 9, 0, 0, 2));
      entries.back().to = static_cast<std::uint8_t>(move);
    }
  }
  return entries;
}

bool isSame(const BookEntry& a, const BookEntry& b) {
  return a.key == b.key && a.isSameMove(b) && a.wins == b.wins && a.draws == b.draws &&
         a.losses == b.losses;
}

TEST(MergeBooks, TakesEveryPositionOnceFromTheMasterFirst) {
  const TemporaryDirectory directory;
  std::mt19937 random(8);
  for (int round = 0; round < 60; ++round) {
    const std::vector<BookEntry> master = randomBook(random);
    const std::vector<BookEntry> secondary = randomBook(random);
    std::set<std::uint64_t> masterKeys;
    for (const BookEntry& entry : master) masterKeys.insert(entry.key);
    std::vector<BookEntry> expected = master;
    std::set<std::uint64_t> keys = masterKeys;
    for (const BookEntry& entry : secondary) {
      if (masterKeys.contains(entry.key)) continue;
      expected.push_back(entry);
      keys.insert(entry.key);
    }
    std::stable_sort(expected.begin(), expected.end(),
                     [](const BookEntry& a, const BookEntry& b) { return a.key < b.key; });
    writeBook("m.obk", master);
    writeBook("s.obk", secondary);
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(mergeBooks("m.obk", "s.obk", "r.obk")); }),
              "merging m.obk with s.obk to r.obk...\n...done!\nr.obk contains " +
                  std::to_string(keys.size()) + " positions with " +
                  std::to_string(expected.size()) + " moves\n");
    const std::vector<BookEntry> result = readBook("r.obk");
    EXPECT_TRUE(std::equal(result.begin(), result.end(), expected.begin(), expected.end(), isSame));
    if (secondary.empty()) {
      EXPECT_EQ(readFile("r.obk"), readFile("m.obk"));
    }
    // A second time it is there already.
    printedBy([] { EXPECT_TRUE(mergeBooks("r.obk", "s.obk", "r2.obk")); });
    EXPECT_EQ(readFile("r2.obk"), readFile("r.obk"));
  }
}

TEST(MergeBooks, KeepsThirtyOneRecordsOfAPositionAndSplitOnesApart) {
  const TemporaryDirectory directory;
  std::vector<BookEntry> entries = {makeEntry(1, "a1a2", 70000, 0, 0)};
  for (int i = 0; i < 40; ++i) {
    entries.push_back(makeEntry(2, "a1a1", 1, 0, 0));
    entries.back().to = static_cast<std::uint8_t>(i);
  }
  entries.push_back(makeEntry(3, "a1a2", 1, 0, 0));
  writeBook("m.obk", entries);
  writeBook("s.obk", {});
  printedBy([] { EXPECT_TRUE(mergeBooks("m.obk", "s.obk", "r.obk")); });
  const std::vector<BookEntry> result = readBook("r.obk");
  ASSERT_EQ(result.size(), 2 + 31 + 1U);
  EXPECT_EQ(result[0].wins, 65535U);
  EXPECT_EQ(result[32].to, 30);
  EXPECT_EQ(result[33].key, 3U);
}

TEST(MergeBooks, HasTheMastersLayout) {
  const TemporaryDirectory directory;
  writeBook("old.obk", {makeEntry(1, "a1a2", 1, 2, 3)}, BookHeader::headerless());
  writeBook("new.obk", {makeEntry(2, "a1a2", 4, 5, 6, 8)});
  printedBy([] { EXPECT_TRUE(mergeBooks("old.obk", "new.obk", "r.obk")); });
  constexpr std::string_view EXPECTED =
      "\0\0\0\0\0\0\0\0OBK\0\x10\x02\x10\x02"
      "\0\0\0\0\0\0\0\1\0\x10\0\1\0\2\0\3"
      "\0\0\0\0\0\0\0\2\0\x10\0\4\0\5\0\6";
  EXPECT_EQ(readFile("r.obk"), std::string(EXPECTED.data(), 48));
}

TEST(MergeBooks, RefusesWithTheReason) {
  const TemporaryDirectory directory;
  writeBook("a.obk", {makeEntry(1, "a1a2", 1, 0, 0)});
  writeBook("b.obk", {});
  const struct {
    const char* master;
    const char* secondary;
    const char* result;
    const char* output;
  } cases[] = {
      {"", "b.obk", "r.obk", ""},
      {"a.obk", "", "r.obk", ""},
      {"a.obk", "b.obk", "", ""},
      {"a.obk", "b.obk", "a.obk", "cannot merge book to self\n"},
      {"a.obk", "b.obk", "b.obk", "cannot merge book to self\n"},
      {"x.obk", "b.obk", "r.obk", "could not open file: x.obk\n"},
      {"a.obk", "x.obk", "r.obk", "could not open file: x.obk\n"},
      {"a.obk", "b.obk", "no/r.obk", "could not open file: no/r.obk\n"},
      {"a.obk", "b.obk", "/dev/full",
       "merging a.obk with b.obk to /dev/full...\ncould not write file: /dev/full\n"},
  };
  for (const auto& example : cases) {
    EXPECT_EQ(printedBy([&] {
                EXPECT_FALSE(mergeBooks(example.master, example.secondary, example.result));
              }),
              example.output);
    EXPECT_FALSE(std::filesystem::exists("r.obk"));
  }
  EXPECT_EQ(readBook("a.obk").size(), 1U);
}

}  // namespace
}  // namespace ombrin
