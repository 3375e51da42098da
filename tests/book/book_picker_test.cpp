#include "book/book_picker.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "book_samples.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

IniFile iniOf(const std::string& text) {
  writeFile("test.ini", text);
  IniFile ini;
  EXPECT_TRUE(ini.load("test.ini"));
  return ini;
}

class BookPickerTest : public testing::Test {
 protected:
  BookPickerTest() { setFen(board_, START_FEN); }

  void open(const std::vector<BookEntry>& entries, const BookHeader& header = {}) {
    writeBook("book.obk", entries, header);
    ASSERT_TRUE(book_.open("book.obk"));
  }

  TemporaryDirectory directory_;
  Board board_;
  BookFile book_{board_};
  BookPicker picker_{book_};
};

TEST(PlaySettings, ReadsEveryKey) {
  const TemporaryDirectory directory;
  const PlaySettings settings = PlaySettings::read(
      iniOf("book.play.maxply=1\nbook.play.mingames=20\nbook.play.mingamepct=30\n"
            "book.play.minelo=40\nbook.play.maxelodelta=50\nbook.play.minscorew=60\n"
            "book.play.minscoreb=70\nbook.play.maxscoredelta=8.5\nbook.play.gameweight=-90\n"
            "book.play.eloweight=11\nbook.play.scoreweight=12\nbook.play.winweight=13\n"
            "book.play.drawweight=14\nbook.play.minweight=15\nbook.play.random=16x\n"));
  EXPECT_EQ(settings.maxply, 1);
  EXPECT_EQ(settings.mingames, 20);
  EXPECT_EQ(settings.mingamepct, 0.3);
  EXPECT_EQ(settings.minelo, 40);
  EXPECT_EQ(settings.maxelodelta, 50);
  EXPECT_EQ(settings.minscorew, 0.6);
  EXPECT_EQ(settings.minscoreb, 0.7);
  EXPECT_EQ(settings.maxscoredelta, 0.085);
  EXPECT_EQ(settings.gameweight, -0.9);
  EXPECT_EQ(settings.eloweight, 0.11);
  EXPECT_EQ(settings.scoreweight, 0.12);
  EXPECT_EQ(settings.winweight, 0.13);
  EXPECT_EQ(settings.drawweight, 0.14);
  EXPECT_EQ(settings.minweight, 0.15);
  EXPECT_EQ(settings.random, 0.16);
  const PlaySettings defaults = PlaySettings::read(iniOf("book.play.minelo=\n"));
  EXPECT_EQ(defaults.minelo, 2700);
}

// Moves are e4, d4 and c4. Elo 2800 is a factor of 2^(400/70).
TEST_F(BookPickerTest, RejectsAndWeighs) {
  struct Counts {
    std::uint32_t wins, draws, losses;
    double elo;
  };
  const struct {
    const char* what;
    std::vector<Counts> moves;
    const char* ini;
    std::array<std::uint32_t, 3> rejected;
    std::array<double, 3> probabilities;
  } cases[] = {
      {"by games and Elo, halved",
       {{30, 0, 0, 2800}, {10, 0, 0, 2800}},
       "",
       {0, 0},
       {0.625, 0.375}},
      {"few games", {{30, 0, 0, 2800}, {1, 0, 0, 2800}}, "", {0, 1 | 8}, {1, 0}},
      {"far fewer games than the most played",
       {{1000, 0, 0, 2800}, {50, 0, 0, 2800}},
       "",
       {0, 8},
       {1, 0}},
      {"just enough of them",
       {{1009, 0, 0, 2800}, {100, 0, 0, 2800}},
       "book.play.eloweight=0",
       {0, 0},
       {1, 0}},  // kept, but below the minimum weight
      {"low Elo", {{9, 0, 0, 2800}, {9, 0, 0, 2699}}, "", {0, 2}, {1, 0}},
      {"Elo far below the best", {{9, 0, 0, 3000}, {9, 0, 0, 2799}}, "", {0, 16}, {1, 0}},
      {"a rejected move sets no standard", {{0, 0, 9, 3300}, {9, 0, 0, 2800}}, "", {4, 0}, {0, 1}},
      {"a score share falls off linearly",
       {{60, 0, 40, 2800}, {56, 0, 44, 2800}, {54, 0, 46, 2800}},
       "book.play.gameweight=0\nbook.play.eloweight=0\nbook.play.scoreweight=100",
       {0, 0, 0},
       {1 / 1.2, 0.2 / 1.2, 0}},
      {"no score delta: the best alone",
       {{56, 0, 44, 2800}, {60, 0, 40, 2800}},
       "book.play.gameweight=0\nbook.play.eloweight=0\nbook.play.scoreweight=100\n"
       "book.play.maxscoredelta=0",
       {0, 0},
       {0, 1}},
      {"no randomness", {{10, 0, 0, 2800}, {30, 0, 0, 2800}}, "book.play.random=0", {0, 0}, {0, 1}},
      {"half the randomness",
       {{30, 0, 0, 2800}, {10, 0, 0, 2800}},
       "book.play.eloweight=0\nbook.play.random=50",
       {0, 0},
       {0.875, 0.125}},
      {"a negative weight counts as none",
       {{30, 0, 0, 2800}, {10, 0, 0, 2800}},
       "book.play.gameweight=-100\nbook.play.scoreweight=60\nbook.play.eloweight=0",
       {0, 0},
       {1, 0}},
      {"everything rejected",
       {{30, 0, 0, 2600}, {10, 0, 0, 2600}},
       "book.play.random=0",
       {2, 2},
       {0, 0}},
  };
  for (const auto& example : cases) {
    std::vector<BookEntry> entries;
    constexpr std::array<const char*, 3> MOVES = {"e2e4", "d2d4", "c2c4"};
    for (const Counts& move : example.moves) {
      entries.push_back(makeEntry(startBookKey(), MOVES[entries.size()], move.wins, move.draws,
                                  move.losses, factorOf(move.elo)));
    }
    open(entries);
    picker_.configure(iniOf(example.ini));
    const int count = book_.readMoves();
    ASSERT_EQ(count, static_cast<int>(example.moves.size()));
    std::array<double, 32> probabilities{};
    picker_.weigh(count, probabilities, WHITE);
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(picker_.record(i).rejected, example.rejected[i]) << example.what << i;
      EXPECT_NEAR(probabilities[i], example.probabilities[i], 1e-6) << example.what << i;
    }
  }
}

TEST_F(BookPickerTest, TakesBlacksScoreLimitForBlack) {
  play(board_, "e4");
  open({makeEntry(bookKey(board_), "e7e5", 45, 0, 55, factorOf(2800))});
  EXPECT_EQ(moveToText(picker_.pick(0.5)), "e7e5");
}

TEST_F(BookPickerTest, IgnoresEloInBooksWithoutIt) {
  open({makeEntry(startBookKey(), "e2e4", 30, 0, 0), makeEntry(startBookKey(), "d2d4", 10, 0, 0)},
       BookHeader::headerless());
  EXPECT_EQ(moveToText(picker_.pick(0.74)), "e2e4");
  EXPECT_EQ(moveToText(picker_.pick(0.76)), "d2d4");
}

TEST_F(BookPickerTest, DrawsByProbability) {
  open({makeEntry(startBookKey(), "a2a3", 9, 0, 0, factorOf(2600)),  // rejected
        makeEntry(startBookKey(), "e2e4", 30, 0, 0, factorOf(2800)),
        makeEntry(startBookKey(), "d2d4", 10, 0, 0, factorOf(2800))});
  EXPECT_EQ(moveToText(picker_.pick(0)), "e2e4");
  EXPECT_EQ(moveToText(picker_.pick(0.62)), "e2e4");
  EXPECT_EQ(moveToText(picker_.pick(0.63)), "d2d4");
  EXPECT_EQ(moveToText(picker_.pick(0.999999)), "d2d4");

  std::srand(1);
  constexpr int DRAWS = 20000;
  int first = 0;
  for (int i = 0; i < DRAWS; ++i) {
    const std::string move = moveToText(picker_.pick());
    ASSERT_NE(move, "a2a3");
    if (move == "e2e4") ++first;
  }
  const double deviation = std::sqrt(DRAWS * 0.625 * 0.375);
  EXPECT_NEAR(first, DRAWS * 0.625, 5 * deviation);
}

TEST_F(BookPickerTest, HasNoMove) {
  EXPECT_TRUE(picker_.pick(0).isNull());  // no book
  open({makeEntry(startBookKey(), "e2e5", 30, 0, 0, factorOf(2800))});
  EXPECT_TRUE(picker_.pick(0).isNull());  // not a legal move
  open({makeEntry(startBookKey(), "e2e4", 30, 0, 0, factorOf(2600))});
  picker_.configure(iniOf("book.play.random=0"));
  EXPECT_TRUE(picker_.pick(0).isNull());  // everything rejected
  play(board_, "Nf3 Nf6 Ng1 Ng8");
  open({makeEntry(bookKey(board_), "e2e4", 30, 0, 0, factorOf(2800))});
  picker_.configure(iniOf("book.play.maxply=3"));
  EXPECT_TRUE(picker_.pick(0).isNull());  // beyond the limit
  picker_.configure(iniOf("book.play.maxply=4"));
  EXPECT_EQ(moveToText(picker_.pick(0)), "e2e4");
  play(board_, "e4");
  EXPECT_TRUE(picker_.pick(0).isNull());  // not in the book
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
