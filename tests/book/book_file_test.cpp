#include "book/book_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <random>
#include <sstream>
#include <tuple>

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
    for (int elo = 0; elo < 65536; elo += 7) {
      BookEntry written = makeEntry(random(), "b7g3", random() >> 16, random() >> 16,
                                    1 + (random() >> 17), factorOf(elo));
      written.from = static_cast<std::uint8_t>(random());
      std::stringstream bytes;
      writeRecord(written, bytes, flags);
      EXPECT_EQ(bytes.str().size(), static_cast<std::size_t>(recordSizeOf(flags)));
      BookEntry read;
      ASSERT_TRUE(readRecord(read, bytes, flags | BOOK_KEY));
      const bool counts = (flags & BOOK_COUNTS) != 0;
      EXPECT_EQ(std::tuple(read.key, read.from, read.to),
                std::tuple(written.key, written.from, written.to));
      EXPECT_EQ(std::tuple(read.wins, read.draws, read.losses),
                counts ? std::tuple(written.wins, written.draws, written.losses)
                       : std::tuple(0U, 0U, 0U));
      if ((flags & BOOK_ELO) != 0) {
        // Beyond what a float can hold, the largest float.
        ASSERT_NEAR(read.elo(), std::min(elo, 11360), 0.51) << elo;
      }
      EXPECT_FALSE(readRecord(read, bytes, flags | BOOK_KEY));
    }
  }
  EXPECT_EQ(eloOf(0), 0);
  EXPECT_EQ(eloOf(1), 2400);
  EXPECT_EQ(eloOf(4), 2540);
  // An Elo of 0 is shown as a plain 0.
  EXPECT_FALSE(std::signbit(std::round(eloOf(factorOf(0)))));
}

TEST(BookKey, KnowsTheStartPositionAndTheSideToMove) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  EXPECT_EQ(bookKey(board), startBookKey());
  EXPECT_EQ(legacyKey(board), startLegacyKey());
  board.side = BLACK;
  EXPECT_EQ(bookKey(board), startBookKey() ^ 1);
}

TEST(BookKey, FollowsCastlingByMovesInLegacyBooks) {
  const auto joined = [](std::initializer_list<int> bits) {
    std::uint64_t key = 0;
    for (const int bit : bits) key |= castleKey(bit);
    return key;
  };
  const struct {
    const char* fen;
    const char* moves;
    std::uint64_t change;
  } cases[] = {
      {START_FEN.data(), "Nf3 Nf6 Ng1 Ng8", 0},
      {START_FEN.data(), "Nf3 Nf6 Rg1 Rg8 Rh1 Rh8 Ng1 Ng8", castleKey(4) ^ castleKey(8)},
      {START_FEN.data(), "Nf3 Nf6 Rg1 Rg8 Rh1 Rh8 Rg1 Rg8 Rh1 Rh8 Ng1 Ng8", 0},
      {START_FEN.data(), "Nc3 Nc6 Rb1 Rb8 Ra1 Ra8 Nb1 Nb8", castleKey(1) ^ castleKey(2)},
      {"4k3///////4K3 w - -", "Kd1 Kd8 Ke1 Ke8", joined({1, 4}) ^ joined({2, 8})},
  };
  for (const auto& example : cases) {
    Board board;
    ASSERT_TRUE(setFen(board, example.fen));
    const std::uint64_t before = legacyKey(board);
    play(board, example.moves);
    EXPECT_EQ(legacyKey(board), before ^ example.change) << example.moves;
  }
  EXPECT_EQ(startLegacyKey(), startBookKey() ^ castleKey(15) ^ joined({1, 2, 4, 8}));
}

TEST_F(BookFileTest, FindsEveryPositionAndNoOther) {
  for (const int padding : {0, 5}) {
    for (const std::uint64_t positions : {0, 1, 2, 3, 14}) {
      BookHeader header;
      header.size += padding;
      header.recordSize += padding;
      std::ostringstream out;
      writeHeader(header, out);
      out << std::string(static_cast<std::size_t>(padding), 'h');
      for (std::uint64_t i = 1; i <= positions; ++i) {
        for (const char* move : {"e2e4", "d2d4"}) {
          writeRecord(makeEntry(i << 60 | 7, move, 1, 0, 0), out, header.flags);
          out << std::string(static_cast<std::size_t>(padding), 'p');
        }
      }
      writeFile("book.obk", out.str());
      ASSERT_TRUE(book_.open("book.obk"));
      BookEntry entry;
      for (std::uint64_t i = 1; i <= positions; ++i) {
        const std::uint64_t key = i << 60 | 7;
        ASSERT_TRUE(book_.find(key));
        for (const char* move : {"e2e4", "d2d4"}) {
          ASSERT_TRUE(book_.next(entry));
          EXPECT_EQ(entry.key, key);
          EXPECT_EQ(moveText(entry), move);
        }
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
  writeBook("book.obk", manyMoves(startBookKey(), 40));
  ASSERT_TRUE(book_.open("book.obk"));
  ASSERT_EQ(book_.readMoves(), 32);
  EXPECT_EQ(book_.move(32).to, 0x37);
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
  for (const char* name : {"directory", "missing.obk", "", "/dev/zero"}) {
    EXPECT_FALSE(book_.open(name)) << name;
  }
  EXPECT_FALSE(book_.isOpen());
  EXPECT_EQ(book_.readMoves(), 0);
  EXPECT_EQ(book_.recordCount(), 0U);
}

TEST_F(BookFileTest, RefusesFilesThatAreNoneOfItsKindsForAReason) {
  std::ostringstream sound;
  for (const std::uint64_t key : {1, 2, 2, 3}) {
    writeRecord(makeEntry(key << 60, "e2e4", 1, 0, 0), sound, BOOK_COUNTS);
  }
  const auto changed = [&sound](std::size_t at, char byte) {
    std::string bytes = sound.str();
    bytes[at] = byte;
    return bytes;
  };
  const std::pair<std::string, const char*> cases[] = {
      {sound.str(), ""},
      {"", "the file is empty"},
      {sound.str() + "x", "it ends within a record"},
      {changed(16, 0), "its records are not in order"},
      {changed(3 * 16 + 8, 0x08), "its moves make no sense"},
      {changed(3 * 16 + 9, '\x80'), "its moves make no sense"},
      {std::string(100, '\0'), "its header makes no sense"},
  };
  for (const auto& [bytes, problem] : cases) {
    writeFile("book.obk", bytes);
    EXPECT_EQ(book_.open("book.obk"), *problem == '\0');
    EXPECT_EQ(book_.problem(), problem);
    EXPECT_EQ(book_.isOpen(), *problem == '\0');
  }
  for (const int size : {0, 1, 10, 15, 17}) {
    BookHeader header;
    header.recordSize = size;
    writeBook("book.obk", manyMoves(0, 4), header);
    EXPECT_FALSE(book_.open("book.obk")) << size;
  }
}

TEST_F(BookFileTest, CopesWithHugeSparseFiles) {
  constexpr std::uintmax_t FIVE_GIGABYTES = 5368709120;
  for (const BookHeader& header : {BookHeader(), BookHeader::headerless()}) {
    writeBook("sparse.obk", {}, header);
    // Of whole records; without a header's mark, zeros are the beginning of a header.
    std::filesystem::resize_file("sparse.obk", FIVE_GIGABYTES / 18 * 18 + 16);
    ASSERT_EQ(book_.open("sparse.obk"), header.size > 0);
    EXPECT_EQ(book_.recordCount(), header.size > 0 ? FIVE_GIGABYTES / 18 : 0);
    EXPECT_EQ(book_.readMoves(), 0);
  }
}

// Cut short anywhere or with random bytes in it, a book is refused, or gives moves or none, and
// comes to an end.
TEST_F(BookFileTest, SurvivesDamage) {
  std::vector<BookEntry> entries = manyMoves(startBookKey(), 6);
  entries.push_back(makeEntry(startBookKey() + 1, "e2e4", 70000, 1, 1, 4));
  writeBook("sound.obk", entries);
  const std::string sound = readFile("sound.obk");
  std::mt19937 random(5);
  BookPicker picker(book_);
  for (std::size_t length = 0; length < sound.size(); length += 5) {
    std::string bytes = sound;
    // Counts and Elo, which nothing is known about beforehand.
    for (int i = 0; i < 8; ++i) {
      bytes[16 + random() % 7 * 18 + 10 + random() % 8] = static_cast<char>(random());
    }
    for (const std::string& damaged : {sound.substr(0, length), bytes}) {
      writeFile("damaged.obk", damaged);
      if (!book_.open("damaged.obk")) continue;
      const std::string output = printedBy([&] {
        picker.pick(0.5);
        picker.show();
        logBook(book_);
      });
      EXPECT_EQ(output.find("nan"), std::string::npos) << output;
    }
  }
}

}  // namespace
}  // namespace ombrin
