// Books in the form that most programs can exchange.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "book/book_builder.h"
#include "book/book_picker.h"
#include "book/polyglot_key.h"
#include "book_samples.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

// The examples that are published with the format.
TEST(PolyglotKey, IsThePublishedOne) {
  const std::pair<const char*, std::uint64_t> cases[] = {
      {"", 0x463b96181691fc9c},
      {"e2e4", 0x823c9b50fd114196},
      {"e2e4 d7d5", 0x0756b94461c50fb0},
      {"e2e4 d7d5 e4e5", 0x662fafb965db29d4},
      {"e2e4 d7d5 e4e5 f7f5", 0x22a48b5a8e47ff78},
      {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652a607ca3f242c1},
      {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00fdd303c946bdd9},
      {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3c8123ea7b067637},
      {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5c3f9b829b279560},
  };
  for (const auto& [moves, key] : cases) {
    Board board;
    ASSERT_TRUE(setFen(board, START_FEN));
    play(board, moves);
    EXPECT_EQ(polyglotKey(board), key) << moves;
  }
  // A set-up may name a square that no pawn can take on.
  Board named;
  Board plain;
  ASSERT_TRUE(setFen(named, "4k3/8/8/8/4P3/8/8/4K3 b - e3"));
  ASSERT_TRUE(setFen(plain, "4k3/8/8/8/4P3/8/8/4K3 b - -"));
  EXPECT_EQ(polyglotKey(named), polyglotKey(plain));
}

class PolyglotBook : public testing::Test {
 protected:
  struct Row {
    std::uint64_t key;
    unsigned move;  // destination, origin and promotion from the lowest bit, six bits each
    unsigned weight;
  };

  PolyglotBook() { setFen(board_, START_FEN); }

  static void write(const std::string& name, const std::vector<Row>& rows) {
    std::string bytes;
    const auto append = [&bytes](std::uint64_t value, int count) {
      while (count-- > 0) bytes += static_cast<char>(value >> 8 * count);
    };
    for (const Row& row : rows) {
      append(row.key, 8);
      append(row.move, 2);
      append(row.weight, 2);
      append(0, 4);
    }
    writeFile(name, bytes);
  }
  // What a book says about the position after those moves: moves and weights, or games.
  std::map<std::string, std::uint64_t> movesAfter(const std::string& name, const char* moves) {
    std::map<std::string, std::uint64_t> found;
    EXPECT_TRUE(setFen(board_, START_FEN));
    play(board_, moves);
    BookFile book(board_);
    EXPECT_TRUE(book.open(name)) << book.problem();
    for (const BookEntry& entry : book.moves(book.readMoves())) {
      found[moveText(entry)] = entry.games();
    }
    return found;
  }
  bool build(const std::vector<std::string>& sources, const std::string& book,
             const std::string& ini) {
    writeFile("build.ini", ini);
    BuildRequest request;
    request.sources = sources;
    request.iniFile = "build.ini";
    request.bookFile = book;
    bool built = false;
    output_ = printedBy([&] { built = buildBook(board_, request); });
    return built;
  }

  static constexpr unsigned square(const char* name) {
    return static_cast<unsigned>(name[0] - 'a' + 8 * (name[1] - '1'));
  }
  static constexpr unsigned move(const char* from, const char* to, unsigned promotion = 0) {
    return square(to) | square(from) << 6 | promotion << 12;
  }

  TemporaryDirectory directory_;
  Board board_;
  std::string output_;
};

TEST_F(PolyglotBook, IsPlayedFromByItsWeights) {
  write("book.bin", {{polyglotKey(board_), move("e2", "e4"), 300},
                     {polyglotKey(board_), move("d2", "d4"), 100},
                     {polyglotKey(board_), move("a2", "a3"), 3}});
  BookFile book(board_);
  ASSERT_TRUE(book.open("book.bin"));
  EXPECT_EQ(book.recordCount(), 3U);
  // The default limits of Elo and score, which such a book does not tell, reject nothing; those of
  // games do.
  BookPicker picker(book);
  EXPECT_EQ(moveToText(picker.pick(0.74)), "e2e4");
  EXPECT_EQ(moveToText(picker.pick(0.76)), "d2d4");
  const std::string listing = printedBy([&] { picker.show(); });
  EXPECT_NE(listing.find("75.0%  e2e4      0      300      -      -      -      -"),
            std::string::npos)
      << listing;
  EXPECT_NE(listing.find("a2a3"), std::string::npos);
  EXPECT_NE(listing.find("<games%\n"), std::string::npos);
}

TEST_F(PolyglotBook, KnowsCastlingAndPromotion) {
  ASSERT_TRUE(setFen(board_, "r3k2r/1P4P1/8/8/8/8/8/R3K2R w KQkq -"));
  write("book.bin", {{polyglotKey(board_), move("e1", "h1"), 9},
                     {polyglotKey(board_), move("e1", "a1"), 9},
                     {polyglotKey(board_), move("e1", "d1"), 9},
                     {polyglotKey(board_), move("g7", "h8", 4), 9},
                     {polyglotKey(board_), move("b7", "a8", 1), 9},
                     {polyglotKey(board_), move("h1", "f1", 0), 9}});
  BookFile book(board_);
  ASSERT_TRUE(book.open("book.bin"));
  ASSERT_EQ(book.readMoves(), 6);
  std::string moves;
  for (int slot = 1; slot <= 6; ++slot) {
    moves += moveToText(parseMove(board_, moveText(book.move(slot)))) + ' ';
  }
  EXPECT_EQ(moves, "O-O O-O-O e1d1 g7xh8=Q+ b7xa8=N h1f1 ");
}

TEST_F(PolyglotBook, IsRefusedWhenItIsNone) {
  const Row sound{5, move("e2", "e4"), 1};
  const std::pair<std::vector<Row>, const char*> cases[] = {
      {{sound, {4, move("e2", "e4"), 1}}, "its records are not in order"},
      {{sound, {6, move("e2", "e2"), 1}}, "its moves make no sense"},
      {{sound, {6, move("e7", "e8", 5), 1}}, "its moves make no sense"},
      {{}, "the file is empty"},
  };
  BookFile book(board_);
  for (const auto& [rows, problem] : cases) {
    write("book.BIN", rows);
    EXPECT_FALSE(book.open("book.BIN"));
    EXPECT_EQ(book.problem(), problem);
  }
}

constexpr const char* KEEP_ALL =
    "book.build.minelo=0\nbook.build.maxelodelta=0\nbook.build.minply=0\nbook.build.mingames=1\n"
    "book.build.minquality=-99999\nbook.build.minscorew=0\nbook.build.minscoreb=0\n"
    "book.build.keeppct=100\nbook.play.mingames=1\nbook.play.mingamepct=0\n"
    "book.play.minelo=-99999\nbook.play.maxelodelta=99999\nbook.play.minscorew=0\n"
    "book.play.minscoreb=0\nbook.play.eloweight=0\nbook.play.minweight=0\n";

// Three games to one, and castling.
constexpr const char* GAMES =
    "[Result \"1-0\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 O-O 1-0\n\n"
    "[Result \"1-0\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 O-O 1-0\n\n"
    "[Result \"0-1\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 O-O 0-1\n\n"
    "[Result \"1-0\"]\n\nd4 d5 1-0\n\n";

TEST_F(PolyglotBook, IsBuiltFromGamesByThePlaySettings) {
  using Moves = std::map<std::string, std::uint64_t>;
  writeFile("games.pgn", GAMES);
  ASSERT_TRUE(build({"games.pgn"}, "games.bin", KEEP_ALL)) << output_;
  EXPECT_EQ(movesAfter("games.bin", ""), (Moves{{"e2e4", 65535}, {"d2d4", 21845}}));
  EXPECT_EQ(movesAfter("games.bin", "e4 e5 Nf3 Nc6 Bc4 Bc5"), (Moves{{"e1g1", 65535}}));
  // In the file the king takes his rook, and the records are in order.
  const std::vector<BookEntry> records = readBook("games.bin");
  EXPECT_TRUE(std::is_sorted(records.begin(), records.end(), isBefore));
  EXPECT_EQ(std::ranges::count(records, "e1h1", moveText), 1);
  // What the settings would not play is not there, and a book of nothing is not written.
  ASSERT_TRUE(build({"games.pgn"}, "strict.bin", KEEP_ALL + std::string("book.play.mingames=2\n")));
  EXPECT_EQ(movesAfter("strict.bin", ""), (Moves{{"e2e4", 65535}}));
  EXPECT_FALSE(build({"games.pgn"}, "none.bin", KEEP_ALL + std::string("book.play.mingames=9\n")));
  EXPECT_TRUE(output_.ends_with("-->no move passes the limits of book.play!\n")) << output_;
  EXPECT_FALSE(std::filesystem::exists("none.bin"));
}

// Each kind becomes the other by a walk, and comes back as what it was.
TEST_F(PolyglotBook, TurnsIntoAnObkAndBack) {
  writeFile("games.pgn", GAMES);
  ASSERT_TRUE(build({"games.pgn"}, "games.obk", KEEP_ALL));
  ASSERT_TRUE(build({"games.obk"}, "walked.obk", KEEP_ALL));
  EXPECT_EQ(readFile("walked.obk"), readFile("games.obk"));
  ASSERT_TRUE(build({"games.pgn"}, "games.bin", KEEP_ALL));
  ASSERT_TRUE(build({"games.obk"}, "walked.bin", KEEP_ALL)) << output_;
  EXPECT_EQ(readFile("walked.bin"), readFile("games.bin"));
  ASSERT_TRUE(build({"games.bin"}, "back.obk", KEEP_ALL));
  ASSERT_TRUE(build({"back.obk"}, "back.bin", KEEP_ALL));
  EXPECT_EQ(readFile("back.bin"), readFile("games.bin"));
  EXPECT_EQ(movesAfter("back.obk", "e4 e5 Nf3 Nc6 Bc4 Bc5").at("e1g1"), 65535U);
  // Two books together have the games of both.
  ASSERT_TRUE(build({"games.obk", "walked.obk"}, "both.obk", KEEP_ALL));
  EXPECT_EQ(movesAfter("both.obk", "").at("e2e4"), 6U);
  EXPECT_FALSE(build({"games.obk", "games.pgn"}, "no.obk", KEEP_ALL));
}

}  // namespace
}  // namespace ombrin
