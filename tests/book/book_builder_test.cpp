#include "book/book_builder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <tuple>

#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "book/book_table.h"
#include "book/game_collector.h"
#include "book/table_filter.h"
#include "book_samples.h"
#include "support/random_games.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

constexpr const char* KEEP_ALL =
    "book.build.minelo=0\nbook.build.maxelodelta=0\nbook.build.minply=0\nbook.build.mingames=1\n"
    "book.build.minquality=-99999\nbook.build.minscorew=0\nbook.build.minscoreb=0\n"
    "book.build.keeppct=100\n";

std::string gameText(const std::string& tags, const std::string& moves, const std::string& result) {
  return "[Result \"" + result + "\"]\n" + tags + "\n" + moves + " " + result + "\n\n";
}

class BookBuilderTest : public testing::Test {
 protected:
  struct Built {
    bool ok;
    std::string output;
  };
  Built build(const std::string& pgn, const std::string& ini, int maxGames = 0) {
    writeFile("games.pgn", pgn);
    writeFile("build.ini", ini);
    Built built{};
    built.output = printedBy([&] {
      std::string name = "games.obk";
      built.ok = buildBook(board_, name, "build.ini", "games.pgn", maxGames);
    });
    return built;
  }

  TemporaryDirectory directory_;
  Board board_;
};

// Four games whose numbers are easily worked out: with both players at 2400, a game has the weight
// 2, so that a win adds 2 to a move's factor and a draw 1.
TEST_F(BookBuilderTest, TurnsAFewGamesIntoTheNumbersThatTheyHold) {
  const std::string elo = "[WhiteElo \"2400\"]\n[BlackElo \"2400\"]\n";
  const Built built =
      build(gameText(elo, "1. e4 e5", "1-0") + gameText(elo, "1. e4 e5", "1/2-1/2") +
                gameText(elo, "1. e4 c5", "0-1") + gameText(elo, "1. d4 d5", "1-0"),
            "book.build.minply=2\nbook.build.mingames=1\nbook.build.minquality=0\n"
            "book.build.minscorew=0\nbook.build.minscoreb=0\n"
            "book.play.mingames=1\nbook.play.minelo=0\n");
  EXPECT_TRUE(built.ok);
  EXPECT_EQ(built.output,
            "Book configuration\n---------------------\npgnfile    = games.pgn\n"
            "inifile    = build.ini\nbookfile   = games.obk\nminelo     = 2300\n"
            "maxelodelta=  120\nminply     =    2\nmaxply     =   50\nmingames   =    1\n"
            "minquality =    0\nminscorew  =    0\nminscoreb  =    0\nkeeppct    =   98\n"
            "---------------------\n\nprocessing...\n\n"
            "games.read  =       4\n   -error   =       0  (  0%)\n"
            "   -minply  =       0  (  0%)\n   -minelo  =       0  (  0%)\n"
            "   -maxelo  =       0  (  0%)\n   -noresult=       0  (  0%)\n"
            "games.used  =       4  (100%)\n\n"
            "moves      =       8\nmoves-uniq =       5\nfiltering...\nfiltered, slots=5\n"
            " -mingames  =       0  (  0%)\n -minmoveelo=       0  (  0%)\n"
            " -minscore  =       0  (  0%)\nmoves      =       5\nsorting...\n"
            "positions  =       3\nmoves/pos  =    1.67\nmoves      =       5\nfiltering...\n"
            "     -keep =       0  (0.0%)\nmoves      =       5\nmoves/pos  =    1.67\n"
            "\n\nsaving book to games.obk\nsaved 5 moves\n");

  BookFile book(board_);
  ASSERT_TRUE(book.open("games.obk"));
  BookPicker picker(book);
  IniFile ini;
  ASSERT_TRUE(ini.load("build.ini"));
  picker.configure(ini);
  // e4: one win, draw and loss, so Elo 2400 + 70 log2(3) = 2511; its result varies by 1/6 a game,
  // and sqrt(1/6/3) = 23.57%. d4: 2400 + 70 log2(2). Game shares 3/4 and 1/4, Elo shares 3/5 and
  // 2/5, and their means. Together: a factor of 5, 2.5 of 4 points.
  EXPECT_EQ(printedBy([&] { picker.show(); }),
            "criteria: maxply=0, mingames=1, mingamepct=10, minelo=0, maxelodelta=200, "
            "minscorew=50, minscoreb=40, maxscoredelta=5\n"
            "weights : gameweight=100, eloweight=100, scoreweight=0, winweight=0, drawweight=0, "
            "minweight=10, random=100\n\n"
            " pick   move    elo    games  score    +/-   drw%   win%   elo%  game%  score%  "
            "combi%\n" +
                std::string(87, '-') +
                "\n 67.5%  e2e4   2511        3  50.00  23.57   33.3   33.3   60.0   75.0    0.00"
                "   67.51\n"
                " 32.5%  d2d4   2470        1 100.00   0.00  100.0    0.0   40.0   25.0  100.00"
                "   32.49\n" +
                std::string(87, '-') +
                "\n100.0%         2563        4   62.5   20.7  50.00  25.00\n");
  EXPECT_EQ(printedBy([&] { logBook(book); }),
            "header.size=16\nentry .size=18\n\n\n[1-1]: #=3, %=60.00\n[2-2]: #=1, %=20.00\n"
            "[3-4]: #=1, %=20.00\ntotal moves=5, accounted=5\n"
            "total positions=3, moves/position=1.67\n");
  play(board_, "e4");
  ASSERT_EQ(book.readMoves(), 2);
  EXPECT_EQ(moveText(book.move(1)), "e7e5");
  EXPECT_EQ(book.move(1).from, 0x80 | 0x64);
  EXPECT_EQ(book.move(1).losses, 1U);
  EXPECT_EQ(book.move(1).draws, 1U);
  EXPECT_EQ(book.move(1).elo(), 2400);
  EXPECT_EQ(book.move(2).wins, 1U);
}

// Every game that goes in is counted where it belongs, by a recount that shares no code with the
// builder but the rules of the game.
TEST_F(BookBuilderTest, CountsEveryMoveOfRandomGames) {
  RandomGames games(42);
  std::string text;
  for (int i = 0; i < 300; ++i) text += games.next();
  const Built built = build(text, std::string(KEEP_ALL) + "book.build.maxply=30\n");
  ASSERT_TRUE(built.ok) << built.output;

  std::map<std::tuple<std::uint64_t, int, int>, std::array<std::uint32_t, 3>> expected;
  std::istringstream lines(text);
  std::string word;
  int whiteResult = 0;
  int ply = 0;
  bool inTag = false;
  while (lines >> word) {
    if (word == "[Result") {
      lines >> word;
      whiteResult = word == "\"1-0\"]" ? 0 : word == "\"0-1\"]" ? 2 : 1;
      ASSERT_TRUE(setFen(board_, START_FEN));
      ply = 0;
      continue;
    }
    inTag = inTag || word.front() == '[';
    const bool skipped = inTag || word.back() == '.' || word.find('-') == 1 || word == "1/2-1/2";
    if (word.back() == ']') inTag = false;
    if ((skipped && word.front() != 'O') || ply >= 30) continue;
    const Move move = parseMove(board_, word);
    ASSERT_FALSE(move.isNull()) << word;
    const std::uint64_t key = board_.hash ^ static_cast<unsigned>(ply % 2);
    if (move.isPromotion() && move.promotion() != QUEEN) {
      ply = 30;
      continue;
    }
    const int result = ply % 2 == 0 ? whiteResult : 2 - whiteResult;
    ++expected[{key, move.from().number() | ply % 2 << 7, move.to().number()}][result];
    makeMove(board_, move);
    ++ply;
  }

  const std::vector<BookEntry> book = readBook("games.obk");
  EXPECT_EQ(book.size(), expected.size());
  EXPECT_TRUE(std::is_sorted(book.begin(), book.end(), isBefore));
  for (const BookEntry& entry : book) {
    const auto found = expected.find({entry.key, entry.from, entry.to});
    ASSERT_NE(found, expected.end());
    EXPECT_EQ(found->second, (std::array{entry.wins, entry.draws, entry.losses}));
  }
}

TEST_F(BookBuilderTest, FiltersGames) {
  const auto elo = [](int white, int black) {
    return "[WhiteElo \"" + std::to_string(white) + "\"]\n[BlackElo \"" + std::to_string(black) +
           "\"]\n";
  };
  const std::string pgn =
      gameText(elo(2300, 2420), "e4 e5 Nf3", "1-0") +
      gameText(elo(2300, 2421), "e4 e5 Nf3", "1-0") +
      gameText(elo(2299, 2299), "e4 e5 Nf3", "1-0") + gameText(elo(2500, 2500), "e4 e5", "1-0") +
      gameText(elo(2500, 2500), "e4 e5 Nf3", "*") + "[Result \"1-0\"]\n" + elo(2500, 2500) +
      "\ne4 e5 Nf3 0-1\n\n" + gameText(elo(2500, 2500) + "[FEN \"8/8\"]\n", "e4 e5 Nf3", "1-0") +
      gameText(elo(2500, 2500), "e4 e5 Ke3", "1-0");
  const Built built = build(pgn, "book.build.minply=3\nbook.build.mingames=1\n");
  for (const char* text :
       {"games.read  =       8\n", "-error   =       3  (-37%)\n", "-minply  =       1  (-12%)\n",
        "-minelo  =       1  (-12%)\n", "-maxelo  =       1  (-12%)\n",
        "-noresult=       1  (-12%)\n", "games.used  =       1  ( 12%)\n",
        "Warning: Warning: mixed results: 0-1 <> 1-0\n-->error in line 36, game 5\n",
        "-->error in line 43, game 6\n", "illegal move: Ke3\n-->error in line 49, game 7\n",
        "moves      =       5\nmoves-uniq =       3\n"}) {
    EXPECT_NE(built.output.find(text), std::string::npos) << text << built.output;
  }
  EXPECT_EQ(board_.hash ^ board_.side, startBookKey());
}

TEST_F(BookBuilderTest, StopsEarlyWithTheReason) {
  const std::string game = gameText("", "e4 e5", "1-0");
  const struct {
    std::string pgn;
    std::string ini;
    const char* end;
  } cases[] = {
      {"", KEEP_ALL, "-->no games!\n"},
      {gameText("", "e4 e5", "*"), KEEP_ALL, "-->no moves!\n"},
      {gameText("", "e4 e6 e7", "1-0"), KEEP_ALL, "-->no games left!\n"},
      {game, "book.build.maxply=0\n", "-->nothing to do: maxply=0\n"},
  };
  for (const auto& example : cases) {
    const Built built = build(example.pgn, example.ini);
    EXPECT_FALSE(built.ok);
    EXPECT_TRUE(built.output.ends_with(example.end)) << built.output;
    EXPECT_FALSE(std::filesystem::exists("games.obk"));
  }
  std::string name;
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(buildBook(board_, name, "build.ini", "", 0)); }),
            "no pgnfile!\n");
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(buildBook(board_, name, "no.ini", "games.pgn", 0)); }),
            "could not load inifile: no.ini\n");
  std::filesystem::create_directory("dir.pgn");
  for (const char* pgn : {"no.pgn", "dir.pgn"}) {
    EXPECT_EQ(printedBy([&] { EXPECT_FALSE(buildBook(board_, name, "build.ini", pgn, 0)); }),
              std::string("could not open pgn-file: ") + pgn + "\n");
  }
}

TEST_F(BookBuilderTest, NamesTheBookAfterTheCollection) {
  std::filesystem::create_directory("some.dir");
  writeFile("build.ini", KEEP_ALL);
  for (const auto& [pgn, expected] : std::map<std::string, std::string>{
           {"a.b.pgn", "a.b.obk"}, {"some.dir/games", "games.obk"}, {"./x.pgn", "x.obk"}}) {
    writeFile(pgn, gameText("", "e4 e5", "1-0"));
    std::string name;
    printedBy([&, file = pgn] { EXPECT_TRUE(buildBook(board_, name, "build.ini", file, 0)); });
    EXPECT_EQ(name, expected);
    EXPECT_TRUE(std::filesystem::exists(expected));
  }
  writeFile("build.ini", std::string(KEEP_ALL) + "book.build.file=some.dir/named.obk\n");
  std::string name;
  printedBy([&] { EXPECT_TRUE(buildBook(board_, name, "build.ini", "a.b.pgn", 0)); });
  EXPECT_EQ(name, "some.dir/named.obk");
}

TEST_F(BookBuilderTest, TakesNoMoreGamesThanAskedFor) {
  std::string text;
  for (int i = 0; i < 5; ++i) text += gameText("", "e4 e5", "1-0");
  EXPECT_TRUE(build(text, KEEP_ALL, 3).ok);
  EXPECT_EQ(readBook("games.obk").front().games(), 3U);
}

TEST(BookTable, GrowsInTheMiddleOfAGame) {
  Board board;
  BookTable table(board);
  constexpr std::uint64_t ENTRIES = 5000;
  printedBy([&] {
    for (std::uint64_t i = 1; i <= ENTRIES; ++i) {
      // Few different keys, so that entries pile up on the same slots.
      ASSERT_TRUE(table.add(i / 100 + 1, static_cast<std::uint8_t>(i % 100), 5, BookTable::WIN, 1));
      ASSERT_TRUE(
          table.add(i / 100 + 1, static_cast<std::uint8_t>(i % 100), 5, BookTable::LOSS, 1));
      ASSERT_LE(table.used(), table.loadLimit());
    }
  });
  EXPECT_EQ(table.used(), ENTRIES);
  table.sort();
  for (const BookEntry& entry : table.entries()) {
    ASSERT_EQ(entry.wins, 1U);
    ASSERT_EQ(entry.losses, 1U);
    ASSERT_EQ(entry.eloFactor, 2);
  }
}

TEST(BookTable, RefusesToShrinkOrToBeHuge) {
  Board board;
  BookTable table(board);
  EXPECT_EQ(printedBy([&] { EXPECT_TRUE(table.resize(40000)); }), "+1Mb+\n");
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(table.resize(5)); }),
            "cannot resize 40000 to smaller size 1024!\n");
  EXPECT_FALSE(table.resize(SIZE_MAX));
  EXPECT_EQ(table.capacity(), 40000U);
}

TEST(BookTable, LeavesTheOldBookWholeWhenSavingFails) {
  const TemporaryDirectory directory;
  Board board;
  BookTable table(board);
  table.add(1, 2, 3, BookTable::WIN, 1);
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(table.save("no/such.obk")); }),
            "saving book to no/such.obk\ncould not open file: no/such.obk\n");
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(table.save("/dev/full")); }),
            "saving book to /dev/full\ncould not write file: /dev/full\n");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));

  writeFile("old.obk", "whole");
  std::filesystem::create_directory("old.obk.tmp");
  printedBy([&] { EXPECT_FALSE(table.save("old.obk")); });
  EXPECT_EQ(readFile("old.obk"), "whole");
  std::filesystem::remove("old.obk.tmp");
  std::filesystem::create_symlink("old.obk", "link.obk");
  printedBy([&] { EXPECT_TRUE(table.save("link.obk")); });
  EXPECT_EQ(readFile("old.obk").size(), 16 + 18U);
  EXPECT_TRUE(std::filesystem::is_symlink("link.obk"));
  EXPECT_FALSE(std::filesystem::exists("old.obk.tmp"));
}

TEST(TableFilter, DropsMovesByGamesQualityAndScore) {
  const struct {
    std::uint32_t wins, draws, losses;
    float factor;
    bool black;
    std::array<int, 3> dropped;
  } cases[] = {
      {3, 0, 0, 100, false, {1, 0, 0}},   {4, 0, 0, 100, false, {0, 0, 0}},
      {4, 0, 0, 19, false, {0, 1, 0}},    {4, 0, 0, 20, false, {0, 0, 0}},
      {48, 0, 52, 100, false, {0, 0, 1}}, {49, 0, 51, 100, false, {0, 0, 0}},
      {38, 0, 62, 100, true, {0, 0, 1}},  {0, 78, 22, 100, true, {0, 0, 0}},
  };
  for (const auto& example : cases) {
    Board board;
    BookTable table(board);
    BuildCounters counters;
    ASSERT_TRUE(table.add(9, example.black ? 0x80 : 0, 1, BookTable::WIN, example.factor));
    BookEntry& entry = table.entries().front();
    entry.wins = example.wins;
    entry.draws = example.draws;
    entry.losses = example.losses;
    filterMoves(table, BuildSettings(), counters);
    EXPECT_EQ((std::array<int, 3>{static_cast<int>(counters.droppedByGames),
                                  static_cast<int>(counters.droppedByQuality),
                                  static_cast<int>(counters.droppedByScore)}),
              example.dropped);
    EXPECT_EQ(entry.isEmpty(), example.dropped != (std::array<int, 3>{0, 0, 0}));
  }
}

TEST(TableFilter, KeepsTheMovesThatCoverAPosition) {
  for (const auto& [keeppct, kept] : std::map<double, int>{{0.98, 3}, {0.7, 1}, {0.8, 2}}) {
    Board board;
    BookTable table(board);
    BuildCounters counters;
    BuildSettings settings;
    settings.keeppct = keeppct;
    for (const std::uint64_t key : {5U, 6U}) {
      for (int game = 0; game < 10; ++game) {
        const int move = game < 8 ? 0 : game - 7;
        table.add(key, static_cast<std::uint8_t>(move), 1, BookTable::DRAW, 1);
      }
    }
    table.sort();
    EXPECT_EQ(countPositions(table), 2);
    thinPositions(table, settings, counters);
    EXPECT_EQ(counters.droppedByKeeppct, 2 * (3 - kept)) << keeppct;
    EXPECT_FALSE(table.entries().front().isEmpty());
    EXPECT_FALSE(table.entries()[3].isEmpty());
  }
}

}  // namespace
}  // namespace ombrin
