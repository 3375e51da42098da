#include "book/book_file.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <random>
#include <sstream>

#include "board/zobrist.h"
#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "book_samples.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

class BookFileTest : public testing::Test {
 protected:
  BookFileTest() { setFen(board_, START_FEN); }

  TemporaryDirectory directory_;
  Board board_;
  BookFile book_{board_};
};

TEST(BookFormat, WritesTheBytesOfHeaderAndRecord) {
  std::ostringstream out;
  writeHeader(BookHeader(), out);
  BookEntry entry = makeEntry(0x0102030405060708, "e2e4", 1, 0x203, 0x405, 2);
  entry.from |= 0x80;
  writeRecord(entry, out, BOOK_COUNTS | BOOK_ELO);
  constexpr std::string_view EXPECTED =
      "\0\0\0\0\0\0\0\0OBK\0\x10\x02\x12\x06"
      "\1\2\3\4\5\6\7\x08\x94\x34\0\1\2\3\4\5\x09\xa6";  // 2470 is 0x9a6
  EXPECT_EQ(out.str(), std::string(EXPECTED.data(), 16 + 18));
}

TEST(BookFormat, ReadsBackWhatItWrites) {
  std::mt19937 random(3);
  for (const int flags : {BOOK_COUNTS | BOOK_ELO, +BOOK_COUNTS, +BOOK_ELO, 0}) {
    for (int round = 0; round < 100; ++round) {
      BookEntry written = makeEntry(random(), "b7g3", random() >> 16, random() >> 16,
                                    1 + (random() >> 17), factorOf(random() % 4000));
      written.from = static_cast<std::uint8_t>(random());
      std::stringstream bytes;
      writeRecord(written, bytes, flags);
      EXPECT_EQ(bytes.str().size(), static_cast<std::size_t>(recordSizeOf(flags)));
      BookEntry read;
      ASSERT_TRUE(readRecord(read, bytes, flags | BOOK_KEY));
      EXPECT_EQ(read.key, written.key);
      EXPECT_EQ(read.from, written.from);
      EXPECT_EQ(read.to, written.to);
      const bool counts = (flags & BOOK_COUNTS) != 0;
      EXPECT_EQ(read.wins, counts ? written.wins : 0);
      EXPECT_EQ(read.draws, counts ? written.draws : 0);
      EXPECT_EQ(read.losses, counts ? written.losses : 0);
      if ((flags & BOOK_ELO) != 0) {
        EXPECT_NEAR(read.elo(), written.elo(), 0.51);
      }
      EXPECT_FALSE(readRecord(read, bytes, flags | BOOK_KEY));
    }
  }
}

TEST(BookFormat, KeepsTheEloOfEveryFactorInRange) {
  EXPECT_EQ(eloOf(0), 0);
  EXPECT_EQ(eloOf(1), 2400);
  EXPECT_EQ(eloOf(4), 2540);
  for (int elo = 0; elo < 65536; ++elo) {
    BookEntry entry = makeEntry(1, "e2e4", 1, 0, 0, factorOf(elo));
    std::stringstream bytes;
    writeRecord(entry, bytes, BOOK_ELO);
    ASSERT_TRUE(readRecord(entry, bytes, BOOK_ELO | BOOK_KEY));
    // Beyond what a float can hold, the largest float.
    ASSERT_NEAR(entry.elo(), std::min(elo, 11360), 0.51) << elo;
  }
  // An Elo of 0 is shown as a plain 0.
  char text[16];
  std::snprintf(text, sizeof text, "%.0f", eloOf(factorOf(0)));
  EXPECT_STREQ(text, "0");
}

TEST(BookKey, KnowsTheStartPosition) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  EXPECT_EQ(bookKey(board), startBookKey());
  EXPECT_EQ(legacyKey(board), startLegacyKey());
  const std::uint64_t white = bookKey(board);
  ASSERT_TRUE(setFen(board, "rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR b KQkq - -"));
  EXPECT_EQ(bookKey(board) ^ white, 1U);
}

TEST(BookKey, FollowsCastlingByMovesInLegacyBooks) {
  const std::uint64_t start = startBookKey() ^ castleKey(15);
  const auto joined = [](std::initializer_list<int> bits) {
    std::uint64_t key = 0;
    for (const int bit : bits) key |= castleKey(bit);
    return key;
  };
  const std::uint64_t all = joined({1, 2, 4, 8});
  const struct {
    const char* moves;
    std::uint64_t change;
  } cases[] = {
      {"Nf3 Nf6 Ng1 Ng8", 0},
      {"Nf3 Nf6 Rg1 Rg8 Rh1 Rh8 Ng1 Ng8", castleKey(4) ^ castleKey(8)},
      {"Nf3 Nf6 Rg1 Rg8 Rh1 Rh8 Rg1 Rg8 Rh1 Rh8 Ng1 Ng8", 0},
      {"Nc3 Nc6 Rb1 Rb8 Ra1 Ra8 Nb1 Nb8", castleKey(1) ^ castleKey(2)},
  };
  for (const auto& example : cases) {
    Board board;
    ASSERT_TRUE(setFen(board, START_FEN));
    play(board, example.moves);
    EXPECT_EQ(legacyKey(board), start ^ all ^ example.change) << example.moves;
  }
  Board kings;
  ASSERT_TRUE(setFen(kings, "4k3///////4K3 w - -"));
  const std::uint64_t before = legacyKey(kings);
  play(kings, "Kd1 Kd8 Ke1 Ke8");
  EXPECT_EQ(legacyKey(kings), before ^ joined({1, 4}) ^ joined({2, 8}));
}

TEST_F(BookFileTest, FindsEveryPositionAndNoOther) {
  for (const int padding : {0, 5}) {
    for (const std::size_t size : {1U, 2U, 3U, 100U}) {
      BookHeader header;
      header.size = padding == 0 ? 16 : 40;
      header.recordSize += padding;
      std::ostringstream out;
      writeHeader(header, out);
      out << std::string(static_cast<std::size_t>(header.size - 16), 'h');
      for (std::size_t i = 0; i < size; ++i) {
        const std::uint64_t key = (i / 2 + 1) << 60 | 7;  // two records per position
        writeRecord(makeEntry(key, i % 2 == 0 ? "e2e4" : "d2d4", 1, 0, 0), out, 6);
        out << std::string(static_cast<std::size_t>(padding), 'p');
      }
      writeFile("book.obk", out.str());
      ASSERT_TRUE(book_.open("book.obk"));
      BookEntry entry;
      for (std::size_t i = 0; i < size; i += 2) {
        const std::uint64_t key = (i / 2 + 1) << 60 | 7;
        if (i / 2 + 1 > 15) break;
        ASSERT_TRUE(book_.find(key));
        ASSERT_TRUE(book_.next(entry));
        EXPECT_EQ(entry.key, key);
        EXPECT_EQ(moveText(entry), "e2e4");
        EXPECT_FALSE(book_.find(key + 1));
        EXPECT_FALSE(book_.find(key - 1));
      }
      EXPECT_FALSE(book_.find(0));
      EXPECT_FALSE(book_.find(~std::uint64_t{0}));
    }
  }
}

TEST_F(BookFileTest, JoinsTheRecordsOfASplitMove) {
  const std::uint64_t key = startBookKey();
  writeBook("book.obk",
            {makeEntry(key - 1, "a2a3", 1, 0, 0), makeEntry(key, "e2e4", 70000, 2, 200000, 8),
             makeEntry(key, "d2d4", 0, 1, 0, 4), makeEntry(key + 1, "a2a3", 1, 0, 0)});
  ASSERT_TRUE(book_.open("book.obk"));
  EXPECT_EQ(book_.recordCount(), 1 + 4 + 1 + 1U);
  ASSERT_EQ(book_.readMoves(), 2);
  EXPECT_EQ(book_.move(1).wins, 70000U);
  EXPECT_EQ(book_.move(1).draws, 2U);
  EXPECT_EQ(book_.move(1).losses, 200000U);
  EXPECT_NEAR(book_.move(1).eloFactor, 4 * 8, 0.01);
  EXPECT_EQ(moveText(book_.move(2)), "d2d4");
  play(board_, "e4");
  EXPECT_EQ(book_.readMoves(), 0);
}

TEST_F(BookFileTest, StopsAtThirtyTwoMoves) {
  std::vector<BookEntry> entries;
  for (int i = 0; i < 40; ++i) {
    entries.push_back(makeEntry(startBookKey(), "a1a1", 1, 0, 0));
    entries.back().to = static_cast<std::uint8_t>(i);
  }
  writeBook("book.obk", entries);
  ASSERT_TRUE(book_.open("book.obk"));
  ASSERT_EQ(book_.readMoves(), 32);
  EXPECT_EQ(book_.move(32).to, 31);
}

TEST_F(BookFileTest, ReadsBooksWithoutHeader) {
  writeBook("old.obk", {makeEntry(startBookKey(), "g1f3", 3, 2, 1)}, BookHeader::headerless());
  ASSERT_TRUE(book_.open("old.obk"));
  EXPECT_EQ(std::filesystem::file_size("old.obk"), 16U);
  EXPECT_EQ(book_.header().version, 0);
  EXPECT_EQ(book_.recordCount(), 1U);
  EXPECT_FALSE(book_.hasElo());
  EXPECT_FALSE(book_.isLegacy());
  ASSERT_EQ(book_.readMoves(), 1);
  EXPECT_EQ(book_.move(1).losses, 1U);
}

TEST_F(BookFileTest, LooksLegacyBooksUpByLegacyKeys) {
  play(board_, "Nf3");
  const BookEntry reply = makeEntry(legacyKey(board_), "g8f6", 1, 0, 0);
  const BookEntry start = makeEntry(startLegacyKey(), "g1f3", 1, 0, 0);
  const bool inOrder = start.key < reply.key;
  writeBook("legacy.obk", {inOrder ? start : reply, inOrder ? reply : start});
  ASSERT_TRUE(book_.open("legacy.obk"));
  EXPECT_TRUE(book_.isLegacy());
  ASSERT_EQ(book_.readMoves(), 1);
  EXPECT_EQ(moveText(book_.move(1)), "g8f6");
}

TEST_F(BookFileTest, RefusesWhatIsNoBook) {
  std::filesystem::create_directory("directory");
  EXPECT_FALSE(book_.open("directory"));
  EXPECT_FALSE(book_.open("missing.obk"));
  EXPECT_FALSE(book_.open(""));
  EXPECT_FALSE(book_.open("/dev/zero"));
  EXPECT_FALSE(book_.isOpen());
  EXPECT_EQ(book_.readMoves(), 0);
  EXPECT_EQ(book_.recordCount(), 0U);
}

TEST_F(BookFileTest, OpensHeadersThatMakeNoSenseToNothing) {
  const std::string records(18 * 4, '\0');
  for (const int size : {0, 1, 10, 15, 17}) {
    BookHeader header;
    header.recordSize = size;
    std::ostringstream out;
    writeHeader(header, out);
    writeFile("book.obk", out.str() + records);
    EXPECT_TRUE(book_.open("book.obk"));
    EXPECT_EQ(book_.recordCount(), 0U) << size;
    EXPECT_FALSE(book_.find(0));
    BookEntry entry;
    book_.rewind();
    EXPECT_FALSE(book_.next(entry));
  }
}

TEST_F(BookFileTest, CopesWithHugeSparseFiles) {
  constexpr std::uintmax_t FIVE_GIGABYTES = 5368709120;
  for (const bool hasHeader : {false, true}) {
    std::ostringstream out;
    if (hasHeader) writeHeader(BookHeader(), out);
    writeFile("sparse.obk", out.str());
    std::filesystem::resize_file("sparse.obk", FIVE_GIGABYTES);
    ASSERT_TRUE(book_.open("sparse.obk"));
    EXPECT_EQ(book_.recordCount(), hasHeader ? FIVE_GIGABYTES / 18 : 0);
    EXPECT_EQ(book_.readMoves(), 0);
  }
}

// Cut short anywhere and with random bytes in it, a book gives moves or none, and comes to an end.
TEST_F(BookFileTest, SurvivesDamage) {
  std::vector<BookEntry> entries;
  for (int i = 0; i < 12; ++i) {
    entries.push_back(makeEntry(startBookKey() + (i < 6 ? 0 : 1), "e2e4", 70000, 1, 1, 4));
    entries.back().to = static_cast<std::uint8_t>(i);
  }
  writeBook("sound.obk", entries);
  const std::string sound = readFile("sound.obk");
  std::mt19937 random(5);
  BookPicker picker(book_);
  for (std::size_t round = 0; round < 2 * sound.size(); round += 5) {
    std::string bytes = sound;
    if (round < sound.size()) {
      bytes.resize(round);
    } else {
      for (int i = 0; i < 8; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    writeFile("damaged.obk", bytes);
    ASSERT_TRUE(book_.open("damaged.obk"));
    EXPECT_LE(book_.readMoves(), BookFile::MAX_MOVES_READ);
    const std::string output = printedBy([&] {
      for (const double drawn : {0.0, 0.5, 0.999}) picker.pick(drawn);
      picker.show();
      logBook(book_);
    });
    EXPECT_EQ(output.find("illegal"), std::string::npos);
    EXPECT_EQ(output.find("nan"), std::string::npos) << output;
  }
}

}  // namespace
}  // namespace ombrin
