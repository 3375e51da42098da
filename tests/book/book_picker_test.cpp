#include "book/book_picker.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <set>
#include <sstream>

#include "book_samples.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

class BookPickerTest : public testing::Test {
 protected:
  BookPickerTest() { setFen(board_, START_FEN); }

  void open(const std::vector<BookEntry>& entries, const BookHeader& header = {}) {
    writeBook("book.obk", entries, header);
    ASSERT_TRUE(book_.open("book.obk"));
  }

  // Settings without their group, such as "random=0 minelo=2000".
  void configure(const std::string& settings) {
    std::istringstream words(settings);
    std::string text;
    for (std::string word; words >> word;) text += "book.play." + word + "\n";
    writeFile("test.ini", text);
    IniFile ini;
    ASSERT_TRUE(ini.load("test.ini"));
    picker_.configure(ini);
  }

  TemporaryDirectory directory_;
  Board board_;
  BookFile book_{board_};
  BookPicker picker_{book_};
};

TEST_F(BookPickerTest, ReadsAndShowsEverySetting) {
  open({makeEntry(startBookKey(), "e2e4", 1, 0, 0)});
  configure(
      "maxply=1 mingames=20 mingamepct=30 minelo=40 maxelodelta=50 minscorew=60 minscoreb=70 "
      "maxscoredelta=8.6 gameweight=-90 eloweight=11 scoreweight=12 winweight=13 drawweight=14 "
      "minweight=15 random=16x");
  EXPECT_TRUE(printedBy([&] { picker_.show(); })
                  .starts_with("criteria: maxply=1, mingames=20, mingamepct=30, minelo=40, "
                               "maxelodelta=50, minscorew=60, minscoreb=70, maxscoredelta=9\n"
                               "weights : gameweight=-90, eloweight=11, scoreweight=12, "
                               "winweight=13, drawweight=14, minweight=15, random=16\n"));
}

// Moves are e4, d4 and c4. Elo 2800 is a factor of 2^(400/70).
TEST_F(BookPickerTest, RejectsAndWeighs) {
  struct Counts {
    std::uint32_t wins, draws, losses;
    double elo;
  };
  const struct {
    std::vector<Counts> moves;
    std::string settings;
    std::array<std::uint32_t, 3> rejected;
    std::array<double, 3> probabilities;
  } cases[] = {
      // By games and Elo, halved; more or less by chance.
      {{{30, 0, 0, 2800}, {10, 0, 0, 2800}}, "", {0, 0}, {0.625, 0.375}},
      {{{10, 0, 0, 2800}, {30, 0, 0, 2800}}, "random=0", {0, 0}, {0, 1}},
      {{{30, 0, 0, 2800}, {10, 0, 0, 2800}}, "eloweight=0 random=50", {0, 0}, {0.875, 0.125}},
      // Few games, or few beside the most played; just enough, but below the minimum weight.
      {{{30, 0, 0, 2800}, {1, 0, 0, 2800}}, "", {0, 1 | 8}, {1, 0}},
      {{{1000, 0, 0, 2800}, {50, 0, 0, 2800}}, "", {0, 8}, {1, 0}},
      {{{1009, 0, 0, 2800}, {100, 0, 0, 2800}}, "eloweight=0", {0, 0}, {1, 0}},
      // A low Elo, or one far below the best. A rejected move sets no standard.
      {{{9, 0, 0, 2800}, {9, 0, 0, 2699}}, "", {0, 2}, {1, 0}},
      {{{9, 0, 0, 3000}, {9, 0, 0, 2799}}, "", {0, 16}, {1, 0}},
      {{{0, 0, 9, 3300}, {9, 0, 0, 2800}}, "", {4, 0}, {0, 1}},
      // A score's share falls off linearly; without a delta the best stands alone.
      {{{60, 0, 40, 2800}, {56, 0, 44, 2800}, {54, 0, 46, 2800}},
       "gameweight=0 eloweight=0 scoreweight=100",
       {0, 0, 0},
       {1 / 1.2, 0.2 / 1.2, 0}},
      {{{56, 0, 44, 2800}, {60, 0, 40, 2800}},
       "gameweight=0 eloweight=0 scoreweight=100 maxscoredelta=0",
       {0, 0},
       {0, 1}},
      // A negative weight of the games prefers the rare moves, and single ones always have a share.
      {{{30, 0, 0, 2800}, {10, 0, 0, 2800}}, "gameweight=-100 eloweight=0", {0, 0}, {0.25, 0.75}},
      {{{30, 0, 0, 2800}}, "gameweight=-100 eloweight=0", {0}, {1}},
      // Mixed with others, what comes out below 0 counts as 0, whatever the sign of the sum.
      {{{30, 0, 0, 2800}, {10, 0, 0, 2800}},
       "gameweight=-100 scoreweight=60 eloweight=0",
       {0, 0},
       {0, 1}},
      {{{30, 0, 0, 2800}, {10, 0, 0, 2800}},
       "gameweight=-100 scoreweight=100 eloweight=0",
       {0, 0},
       {1, 0}},
      // Nothing is left.
      {{{30, 0, 0, 2600}, {10, 0, 0, 2600}}, "", {2, 2}, {0, 0}},
  };
  for (const auto& example : cases) {
    std::vector<BookEntry> entries;
    constexpr std::array<const char*, 3> MOVES = {"e2e4", "d2d4", "c2c4"};
    for (const Counts& move : example.moves) {
      entries.push_back(makeEntry(startBookKey(), MOVES[entries.size()], move.wins, move.draws,
                                  move.losses, factorOf(move.elo)));
    }
    open(entries);
    configure(example.settings);
    const int count = book_.readMoves();
    ASSERT_EQ(count, static_cast<int>(example.moves.size()));
    std::array<double, 32> probabilities{};
    picker_.weigh(count, probabilities, WHITE);
    const std::ptrdiff_t number = &example - cases;
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(picker_.record(i).rejected, example.rejected[i]) << number << ": " << i;
      EXPECT_NEAR(probabilities[i], example.probabilities[i], 1e-5) << number << ": " << i;
    }
  }
}

TEST_F(BookPickerTest, DrawsByProbability) {
  open({makeEntry(startBookKey(), "a2a3", 9, 0, 0, factorOf(2600)),  // rejected
        makeEntry(startBookKey(), "e2e4", 30, 0, 0, factorOf(2800)),
        makeEntry(startBookKey(), "d2d4", 10, 0, 0, factorOf(2800))});
  EXPECT_EQ(moveToText(picker_.pick(0)), "e2e4");
  EXPECT_EQ(moveToText(picker_.pick(0.62)), "e2e4");
  EXPECT_EQ(moveToText(picker_.pick(0.63)), "d2d4");
  EXPECT_EQ(moveToText(picker_.pick(0.999999)), "d2d4");

  // Without a number it draws one.
  std::srand(1);
  std::set<std::string> picked;
  for (int i = 0; i < 100; ++i) picked.insert(moveToText(picker_.pick()));
  EXPECT_EQ(picked, (std::set<std::string>{"d2d4", "e2e4"}));
}

TEST_F(BookPickerTest, HasNoMove) {
  EXPECT_TRUE(picker_.pick(0).isNull());  // no book
  open({makeEntry(startBookKey(), "e2e5", 30, 0, 0, factorOf(2800))});
  EXPECT_TRUE(picker_.pick(0).isNull());  // not a legal move
  open({makeEntry(startBookKey(), "e2e4", 30, 0, 0, factorOf(2600))});
  configure("random=0");
  EXPECT_TRUE(picker_.pick(0).isNull());  // everything rejected
  play(board_, "Nf3 Nf6 Ng1 Ng8");
  open({makeEntry(bookKey(board_), "e2e4", 30, 0, 0, factorOf(2800))});
  configure("maxply=3");
  EXPECT_TRUE(picker_.pick(0).isNull());  // beyond the limit
  configure("maxply=4");
  EXPECT_EQ(moveToText(picker_.pick(0)), "e2e4");
  play(board_, "e4");
  EXPECT_TRUE(picker_.pick(0).isNull());  // not in the book
}

TEST_F(BookPickerTest, TakesBlacksScoreLimitForBlackAndIgnoresEloInBooksWithoutIt) {
  play(board_, "e4");
  open({makeEntry(bookKey(board_), "e7e5", 45, 0, 55),
        makeEntry(bookKey(board_), "c7c5", 15, 0, 18)},
       BookHeader::headerless());
  EXPECT_EQ(moveToText(picker_.pick(0.74)), "e7e5");
  EXPECT_EQ(moveToText(picker_.pick(0.76)), "c7c5");
}

TEST_F(BookPickerTest, PicksPromotionsAndCastlings) {
  ASSERT_TRUE(setFen(board_, "8/P5k1//////4K2R w K -"));
  open({makeEntry(bookKey(board_), "a7a8", 30, 0, 0, factorOf(2800)),
        makeEntry(bookKey(board_), "e1g1", 30, 0, 0, factorOf(2800))});
  EXPECT_EQ(moveToText(picker_.pick(0.1)), "a7a8=Q");
  EXPECT_EQ(moveToText(picker_.pick(0.9)), "O-O");
}

TEST_F(BookPickerTest, MarksWhyMovesAreRejected) {
  open({makeEntry(startBookKey(), "e2e4", 100, 0, 0, factorOf(2900)),
        makeEntry(startBookKey(), "d2d4", 0, 0, 1, factorOf(2400))});
  const std::string listing = printedBy([&] { picker_.show(); });
  EXPECT_NE(listing.find("0.00    0.00 <games <elo <score <games% <elo+-\n"), std::string::npos)
      << listing;
  play(board_, "e4");
  EXPECT_EQ(printedBy([&] { picker_.show(); }), "position not in book\n");
}

}  // namespace
}  // namespace ombrin
