#include "book/book_merge.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
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
    for (BookEntry& entry : manyMoves(key, 1 + static_cast<int>(random() % 4))) {
      entry.draws = random() % 9;
      entries.push_back(entry);
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
    std::vector<BookEntry> master = randomBook(random);
    if (master.empty()) master = manyMoves(1, 1);  // an empty one is refused
    const std::vector<BookEntry> secondary = randomBook(random);
    std::map<std::uint64_t, std::vector<BookEntry>> positions;
    for (const BookEntry& entry : master) positions[entry.key].push_back(entry);
    std::set<std::uint64_t> masterKeys;
    for (const auto& [key, moves] : positions) masterKeys.insert(key);
    for (const BookEntry& entry : secondary) {
      if (!masterKeys.contains(entry.key)) positions[entry.key].push_back(entry);
    }
    std::vector<BookEntry> expected;
    for (const auto& [key, moves] : positions) {
      expected.insert(expected.end(), moves.begin(), moves.end());
    }
    writeBook("m.obk", master);
    writeBook("s.obk", secondary);
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(mergeBooks("m.obk", "s.obk", "r.obk")); }),
              "merging m.obk with s.obk to r.obk...\n...done!\nr.obk contains " +
                  std::to_string(positions.size()) + " positions with " +
                  std::to_string(expected.size()) + " moves\n");
    const std::vector<BookEntry> result = readBook("r.obk");
    EXPECT_TRUE(std::equal(result.begin(), result.end(), expected.begin(), expected.end(), isSame));
  }
}

TEST(MergeBooks, KeepsThirtyOneRecordsOfAPositionAndSplitOnesApart) {
  const TemporaryDirectory directory;
  std::vector<BookEntry> entries = manyMoves(2, 40);
  entries.insert(entries.begin(), makeEntry(1, "a1a2", 70000, 0, 0));
  entries.push_back(makeEntry(3, "a1a2", 1, 0, 0));
  writeBook("m.obk", entries);
  writeBook("s.obk", {});
  printedBy([] { EXPECT_TRUE(mergeBooks("m.obk", "s.obk", "r.obk")); });
  const std::vector<BookEntry> result = readBook("r.obk");
  ASSERT_EQ(result.size(), 2 + 31 + 1U);
  EXPECT_EQ(result[0].wins, 65535U);
  EXPECT_EQ(result[32].to, 0x36);
  EXPECT_EQ(result[33].key, 3U);
}

// Both know a1a2, the master with more games than fit into one record.
TEST(MergeBooks, AddsTheGamesWhenAskedTo) {
  const TemporaryDirectory directory;
  writeBook("m.obk", {makeEntry(1, "a1a2", 70000, 0, 0, 4), makeEntry(1, "a1a3", 3, 2, 1, 2),
                      makeEntry(2, "a1a2", 1, 0, 0)});
  writeBook("s.obk", {makeEntry(1, "a1a4", 200000, 0, 0, 8), makeEntry(1, "a1a2", 1, 2, 3, 4),
                      makeEntry(3, "a1a2", 2, 0, 0)});
  printedBy([] { EXPECT_TRUE(mergeBooks("m.obk", "s.obk", "r.obk", MergeRule::SUM)); });
  const std::vector<BookEntry> result = readBook("r.obk");
  // Four records for the first move, two for the second.
  ASSERT_EQ(result.size(), 4 + 2 + 1 + 2U);
  EXPECT_EQ(moveText(result[0]), "a1a4");
  EXPECT_NEAR(result[3].eloFactor, 8, 0.1);
  EXPECT_EQ(result[4].wins + result[5].wins, 70001U);
  EXPECT_EQ(result[4].draws + result[5].draws, 2U);
  EXPECT_EQ(result[4].losses + result[5].losses, 3U);
  EXPECT_NEAR(result[4].eloFactor, 8, 0.1);
  EXPECT_TRUE(isSame(result[6], makeEntry(1, "a1a3", 3, 2, 1)));
  EXPECT_EQ(result[7].key, 2U);
  EXPECT_EQ(result[8].key, 3U);
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
  writeFile("short.obk", readFile("a.obk") + "x");
  const struct {
    std::string master, secondary, result, output;
  } cases[] = {
      {"", "b.obk", "r.obk", ""},
      {"a.obk", "b.obk", "a.obk", "cannot merge book to self\n"},
      {"a.obk", "b.obk", "b.obk", "cannot merge book to self\n"},
      {"x.obk", "b.obk", "r.obk", "could not open file: x.obk\n"},
      {"b.obk", "a.obk", "r.obk", "could not open file: b.obk: it has no moves\n"},
      {"short.obk", "a.obk", "r.obk", "could not open file: short.obk: it ends within a record\n"},
      {"a.obk", "short.obk", "r.obk", "could not open file: short.obk: it ends within a record\n"},
      {"a.obk", "b.obk", "r.bin",
       "cannot merge books of two kinds; buildbook turns one into the other\n"},
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
  std::filesystem::create_symlink("b.obk", "link.obk");
  EXPECT_EQ(printedBy([] { EXPECT_FALSE(mergeBooks("a.obk", "b.obk", "link.obk")); }),
            "cannot merge book to self\n");
}

}  // namespace
}  // namespace ombrin
