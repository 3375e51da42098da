#include "book/book_builder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <tuple>

#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "book/book_table.h"
#include "book/table_filter.h"
#include "book/table_output.h"
#include "book_samples.h"
#include "pgn/file_source.h"
#include "pgn/pgn_reader.h"
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
    BuildRequest request;
    request.sources = {"games.pgn"};
    request.iniFile = "build.ini";
    request.bookFile = "games.obk";
    request.maxGames = maxGames;
    built.output = printedBy([&] { built.ok = buildBook(board_, request); });
    return built;
  }
  // From files that are there, with the settings that are there.
  Built buildFrom(const std::vector<std::string>& sources, const std::string& book) {
    BuildRequest request;
    request.sources = sources;
    request.iniFile = "build.ini";
    request.bookFile = book;
    Built built{};
    built.output = printedBy([&] { built.ok = buildBook(board_, request); });
    return built;
  }

  TemporaryDirectory directory_;
  Board board_;
};

// Four games whose numbers are easily worked out: with both players at 2400, or one at 2330 and one
// at 2441, a game has the weight 2, so that a win adds 2 to a move's factor and a draw 1.
TEST_F(BookBuilderTest, TurnsAFewGamesIntoTheNumbersThatTheyHold) {
  const std::string elo = "[WhiteElo \"2400\"]\n[BlackElo \"2400\"]\n";
  const std::string unlike = "[WhiteElo \"2330\"]\n[BlackElo \"2441\"]\n";
  const Built built =
      build(gameText(elo, "1. e4 e5", "1-0") + gameText(elo, "1. e4 e5", "1/2-1/2") +
                gameText(elo, "1. e4 c5", "0-1") + gameText(unlike, "1. d4 d5", "1-0"),
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
}

// Every game that goes in is counted where it belongs, by a recount that shares no code with the
// builder but the reading of games and the rules. The table grows several times.
TEST_F(BookBuilderTest, CountsEveryMoveOfRandomGames) {
  constexpr std::size_t MAX_PLY = 30;
  constexpr int MAX_GAMES = 300;
  RandomGames games(42);
  std::string text;
  for (int i = 0; i < MAX_GAMES + 10; ++i) text += games.next();
  const Built built = build(text, std::string(KEEP_ALL) + "book.build.maxply=30\n", MAX_GAMES);
  ASSERT_TRUE(built.ok) << built.output;

  std::map<std::tuple<std::uint64_t, int, int>, std::array<std::uint32_t, 3>> expected;
  FileSource source(std::fopen("games.pgn", "rb"));
  LineReader lines(source);
  PgnReader reader(lines);
  for (int i = 0; i < MAX_GAMES; ++i) {
    const PgnGame* game = reader.readGame();
    const int whiteResult = game->result == WHITE_WON ? 0 : game->result == BLACK_WON ? 2 : 1;
    ASSERT_TRUE(setFen(board_, START_FEN));
    for (std::size_t ply = 0; ply < std::min(MAX_PLY, game->moves.size()); ++ply) {
      const Move move = parseMove(board_, game->moves[ply]);
      ASSERT_FALSE(move.isNull()) << game->moves[ply];
      if (move.isPromotion() && move.promotion() != QUEEN) break;  // no book can hold it
      const bool isBlack = ply % 2 == 1;
      const std::uint64_t key = board_.hash ^ (isBlack ? 1 : 0);
      const int from = move.from().number() | (isBlack ? 0x80 : 0);
      ++expected[{key, from, move.to().number()}][isBlack ? 2 - whiteResult : whiteResult];
      makeMove(board_, move);
    }
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
  const std::string good = elo(2500, 2500);
  const std::string pgn = gameText(elo(2299, 2419), "e4 e5 Nf3", "1-0") +
                          gameText(elo(2300, 2421), "e4 e5 Nf3", "1-0") +
                          gameText(elo(2299, 2299), "e4 e5 Nf3", "1-0") +
                          gameText(good, "e4 e5", "1-0") + gameText(good, "e4 e5 Nf3", "*") +
                          gameText(good, "e4 e5 Nf3 0-1", "1-0") +
                          gameText(good + "[FEN \"8/8\"]\n[White \"A\"]\n", "e4 e5 Nf3", "1-0") +
                          gameText(good, "e4 e5 Ke3", "1-0") +
                          gameText(good + "[Variant \"Chess960\"]\n", "e4 e5 Nf3", "1-0");
  const Built built = build(pgn, "book.build.minply=3\nbook.build.mingames=1\n");
  for (const char* text :
       {"games.read  =       9\n", "-error   =       3  (-33%)\n", "-minply  =       1  (-11%)\n",
        "-minelo  =       1  (-11%)\n", "-maxelo  =       1  (-11%)\n",
        "-variant =       1  (-11%)\n", "-noresult=       1  (-11%)\n",
        "games.used  =       1  ( 11%)\n",
        "-->error in line 36, game 5: Warning: mixed results: 0-1 <> 1-0\n",
        "-->error in line 44, game 6, A - ?: Illegal FEN: no White king: 8/8\n",
        "-->error in line 50, game 7: 2. Ke3: illegal move, no king can go there\n",
        "moves      =       5\nmoves-uniq =       3\n"}) {
    EXPECT_NE(built.output.find(text), std::string::npos) << text << built.output;
  }
  EXPECT_EQ(board_.hash ^ board_.side, startBookKey());
}

TEST_F(BookBuilderTest, TellsWhyAMoveCannotBePlayedAndHowManyMoreThereAre) {
  const std::pair<const char*, const char*> cases[] = {
      {"e4 e5 --", "2. --: a null move"},
      {"e4 e5 Zorg", "2. Zorg: not a move"},
      {"Nc3 e5 Nf3 d5 Nb5 Nc6 Nd4+", "4. Nd4+: ambiguous move, more than one knight"},
      {"e4 e4", "1... e4: illegal move"},
      {"e4 O-O", "1... O-O: illegal move"},
  };
  for (const auto& [moves, problem] : cases) {
    EXPECT_NE(build(gameText("", moves, "1-0"), KEEP_ALL).output.find(problem), std::string::npos)
        << moves;
  }
  std::string text;
  for (int i = 0; i < 25; ++i) text += gameText("", "e4 e4", "1-0");
  const std::string output = build(text, KEEP_ALL).output;
  EXPECT_NE(output.find("game 19: "), std::string::npos);
  EXPECT_EQ(output.find("game 20: "), std::string::npos);
  EXPECT_NE(output.find("-->and 5 more games with illegal moves\n"), std::string::npos);
}

TEST_F(BookBuilderTest, UsesGamesFromOtherPositionsUnlessTheirRulesDiffer) {
  const auto fen = [](const std::string& text) { return "[FEN \"" + text + "\"]\n"; };
  // Black begins, and wins.
  build(gameText(fen("4k3/8/8/8/8/8/8/4K2R b K - 0 1"), "1... Kd7 2. O-O", "0-1"), KEEP_ALL);
  const std::vector<BookEntry> book = readBook("games.obk");
  ASSERT_EQ(book.size(), 2U);
  for (const BookEntry& entry : book) {
    EXPECT_EQ(entry.wins, entry.isBlackMove() ? 1U : 0U) << moveText(entry);
    EXPECT_EQ(moveText(entry), entry.isBlackMove() ? "e8d7" : "e1g1");
  }
  const std::pair<const char*, bool> cases[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", true},
      {"4k3/8/8/8/8/8/4P3/4K3 w KQkq - 0 1", true},
      {"4k3/8/8/8/8/8/4P3/4K1R1 w K - 0 1", false},
      {"4k3/8/8/8/8/8/4P3/R4K2 w Q - 0 1", false},
      {"4k3/8/8/8/8/8/4P3/4K2R w H - 0 1", false},
  };
  for (const auto& [position, used] : cases) {
    const Built built = build(gameText(fen(position), "e4", "1-0"), KEEP_ALL);
    EXPECT_EQ(built.ok, used) << position;
    EXPECT_EQ(built.output.find("-variant =       1") == std::string::npos, used) << position;
  }
}

// Nothing is left, and why.
TEST_F(BookBuilderTest, NamesTheSettingThatRejectedMost) {
  const std::string elo = "[WhiteElo \"2200\"]\n[BlackElo \"2100\"]\n";
  const std::pair<std::string, std::string> cases[] = {
      {"book.build.minply=0\n",
       "-minelo: 100 %: these games carry no ratings; book.build.minelo=0 takes them\n"
       "-->no moves!\n"},
      {"",
       "-minply: 100 %: these games have fewer than 32 half-moves; book.build.minply=0 takes "
       "them\n-->no moves!\n"},
  };
  for (const auto& [settings, end] : cases) {
    const std::string output = build(gameText("", "e4 e5", "1-0"), settings).output;
    EXPECT_TRUE(output.ends_with(end)) << output;
    EXPECT_NE(output.find("games.read  =       1\n"), std::string::npos);
  }
  EXPECT_NE(build(gameText(elo, "e4 e5", "1-0"), "book.build.minply=0\n")
                .output.find("neither player of these games has 2300"),
            std::string::npos);
  EXPECT_NE(build(gameText("", "e4 e5", "1-0"), "book.build.minply=0\nbook.build.minelo=0\n")
                .output.find("-mingames: 100 %: these moves have too few games"),
            std::string::npos);
}

TEST_F(BookBuilderTest, StopsEarlyWithTheReason) {
  const struct {
    std::string pgn;
    const char* ini;
    const char* end;
  } cases[] = {
      {"", KEEP_ALL, "-->no games!\n"},
      {gameText("", "e4 e5", "*"), KEEP_ALL, "-->no moves!\n"},
      {gameText("", "e4 e6 e7", "1-0"), KEEP_ALL, "-->no games left!\n"},
      {gameText("", "e4 e5", "1-0"), "book.build.maxply=0\n", "-->nothing to do: maxply=0\n"},
  };
  for (const auto& example : cases) {
    const Built built = build(example.pgn, example.ini);
    EXPECT_FALSE(built.ok);
    EXPECT_TRUE(built.output.ends_with(example.end)) << built.output;
    EXPECT_FALSE(std::filesystem::exists("games.obk"));
  }
  std::filesystem::create_directory("empty");
  const std::tuple<const char*, const char*, const char*> missing[] = {
      {"build.ini", "", "no pgnfile!\n"},
      {"no.ini", "games.pgn", "could not load inifile: no.ini\n"},
      {"build.ini", "no.pgn", "could not open pgn-file: no.pgn\n"},
      {"build.ini", "empty", "no pgn-files in directory: empty\n"},
  };
  for (const auto& [ini, pgn, output] : missing) {
    BuildRequest request;
    request.iniFile = ini;
    request.sources = {pgn};
    EXPECT_EQ(printedBy([&] { EXPECT_FALSE(buildBook(board_, request)); }), output);
  }
}

TEST_F(BookBuilderTest, RefusesABookThatCannotBeWrittenBeforeItReads) {
  writeFile("build.ini", KEEP_ALL);
  const std::string games = gameText("", "e4 e5", "1-0");
  writeFile("games.pgn", games);
  std::filesystem::create_hard_link("games.pgn", "other.obk");
  const std::pair<std::string, const char*> cases[] = {
      {"no/such.obk", "could not open file: no/such.obk\n"},
      {"games.pgn", "the book would replace its source: games.pgn\n"},
      {"other.obk", "the book would replace its source: games.pgn\n"},
  };
  for (const auto& [book, output] : cases) {
    const Built built = buildFrom({"games.pgn"}, book);
    EXPECT_FALSE(built.ok);
    EXPECT_EQ(built.output, output);
  }
  EXPECT_EQ(readFile("games.pgn"), games);
}

TEST_F(BookBuilderTest, NamesTheBookAfterTheCollection) {
  std::filesystem::create_directory("some.dir");
  const auto nameOf = [&](const std::string& pgn, const std::string& ini) {
    writeFile("build.ini", KEEP_ALL + ini);
    writeFile(pgn, gameText("", "e4 e5", "1-0"));
    BuildRequest request;
    request.sources = {pgn};
    request.iniFile = "build.ini";
    printedBy([&] { EXPECT_TRUE(buildBook(board_, request)); });
    EXPECT_TRUE(std::filesystem::exists(request.bookFile));
    return request.bookFile;
  };
  EXPECT_EQ(nameOf("a.b.pgn", ""), "a.b.obk");
  EXPECT_EQ(nameOf("some.dir/games", ""), "games.obk");
  EXPECT_EQ(nameOf("a.b.pgn", "book.build.file=some.dir/named.obk\n"), "some.dir/named.obk");
}

void add(BookTable& table, const BookEntry& entry) {
  ASSERT_TRUE(table.makeRoomFor(1));
  table.add(entry);
}

// Within its limit, a table lets moves go that were played once, the oldest first, and keeps count
// of every other.
TEST(BookTable, LetsRareMovesGoWhenItMayNotGrow) {
  Board board;
  BookTable table(board);
  table.limitBytes(1024 * 40);
  constexpr std::uint64_t OFTEN = 100;
  const auto play = [&table](std::uint64_t key) {
    ASSERT_TRUE(table.makeRoomFor(1));
    table.add(makeEntry(key, "e2e4", 0, 0, 0), BookTable::WIN, 1);
  };
  for (int round = 0; round < 2; ++round) {
    for (std::uint64_t key = 0; key < OFTEN; ++key) play(key);
  }
  constexpr std::uint64_t RARE = 5000;
  for (std::uint64_t key = OFTEN; key < OFTEN + RARE; ++key) play(key);
  for (std::uint64_t key = 0; key < OFTEN; ++key) play(key);
  EXPECT_LE(table.capacity(), 1412U);
  EXPECT_EQ(table.used() + static_cast<std::size_t>(table.dropped()), OFTEN + RARE);
  std::uint64_t oldest = OFTEN + static_cast<std::uint64_t>(table.dropped());
  for (const BookEntry& entry : table.entries()) {
    EXPECT_EQ(entry.games(), entry.key < OFTEN ? 3U : 1U) << entry.key;
    EXPECT_TRUE(entry.key < OFTEN || entry.key == oldest++);
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

// Until a book is complete, what its name stands for stays whole, and nothing else is left behind.
TEST(BookOutput, GivesTheNameToOneWholeBook) {
  const TemporaryDirectory directory;
  const auto filesHere = [] {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
      names.insert(entry.path().filename().string());
    }
    return names;
  };
  EXPECT_FALSE(BookOutput("no/such.obk").isOpen());
  EXPECT_FALSE(BookOutput(".").isOpen());
  writeFile("book.obk", "old");
  std::filesystem::create_symlink("book.obk", "link.obk");
  {
    BookOutput first("book.obk");
    BookOutput second("link.obk");
    BookOutput third("book.obk");
    for (BookOutput* output : {&first, &second, &third}) ASSERT_TRUE(output->isOpen());
    first.stream() << "first";
    second.stream() << "second";
    EXPECT_TRUE(first.commit());
    EXPECT_EQ(readFile("book.obk"), "first");
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(readFile("book.obk"), "second");
    third.stream() << "third";
  }
  EXPECT_EQ(readFile("book.obk"), "second");
  EXPECT_EQ(filesHere(), (std::set<std::string>{"book.obk", "link.obk"}));
  EXPECT_TRUE(std::filesystem::is_symlink("link.obk"));

  BookOutput unfinished("book.obk");
  std::filesystem::remove("book.obk");
  std::filesystem::create_directory("book.obk");
  EXPECT_FALSE(unfinished.commit());
  EXPECT_EQ(filesHere().size(), 2U);

  BookOutput full("/dev/full");
  ASSERT_TRUE(full.isOpen());
  Board board;
  BookTable table(board);
  EXPECT_EQ(printedBy([&] { EXPECT_FALSE(saveTable(table, full, BOOK_COUNTS)); }),
            "saving book to /dev/full\ncould not write file: /dev/full\n");
}

TEST(TableFilter, DropsMovesByGamesQualityAndScore) {
  using Dropped = std::array<std::int64_t, 3>;
  const struct {
    std::uint32_t wins, draws, losses;
    float factor;
    bool black;
    Dropped dropped;
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
    BookEntry move =
        makeEntry(9, "e2e4", example.wins, example.draws, example.losses, example.factor);
    move.from |= example.black ? 0x80 : 0;
    add(table, move);
    const BookEntry& entry = table.entries().front();
    Progress progress(0, 1);
    filterMoves(table, BuildSettings(), counters, progress);
    EXPECT_EQ(
        (Dropped{counters.droppedByGames, counters.droppedByQuality, counters.droppedByScore}),
        example.dropped);
    EXPECT_EQ(entry.isEmpty(), example.dropped != Dropped{});
  }
}

// Two positions, with a move that eight of ten games went on with and two of one each.
TEST(TableFilter, KeepsTheMovesThatCoverAPosition) {
  for (const auto& [keeppct, kept] : std::map<double, int>{{0.98, 3}, {0.7, 1}, {0.8, 2}}) {
    Board board;
    BookTable table(board);
    for (const std::uint64_t key : {5, 6}) {
      for (const std::uint32_t games : {1, 8, 1}) {
        add(table, makeEntry(key,
                             games == 8              ? "e2e4"
                             : table.used() % 3 == 0 ? "d2d4"
                                                     : "c2c4",
                             0, games, 0, 1));
      }
    }
    Progress progress(0, 1);
    table.sort(progress);
    EXPECT_EQ(countPositions(table), 2);
    BuildCounters counters;
    BuildSettings settings;
    settings.keeppct = keeppct;
    thinPositions(table, settings, counters, progress);
    EXPECT_EQ(counters.droppedByKeeppct, 2 * (3 - kept)) << keeppct;
    EXPECT_FALSE(table.entries()[0].isEmpty() || table.entries()[3].isEmpty());
  }
}

}  // namespace
}  // namespace ombrin
