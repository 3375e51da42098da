// Does the library keep its contract, whatever it is given?
#include "library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <thread>

namespace bitbase_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* KRK = "8/8/8/3k4/8/8/8/R3K3 w";
constexpr const char* KQK = "8/8/8/3k4/8/8/8/Q3K3 w";

TEST(Library, HoldsNothingWithoutTables) {
  const std::string directory = makeDirectory("nothing");
  const Library library(directory);
  EXPECT_EQ(library.probe(KRK), NOT_HELD);
  library.load(directory);
  library.load(directory + "/no/such");
  EXPECT_EQ(library.probe(KRK), NOT_HELD);
}

TEST(Library, FindsTablesWhateverTheSeparator) {
  std::string backwards = tables();
  std::ranges::replace(backwards, '/', '\\');
  int number = 0;
  for (const std::string& directory : {tables() + "/", tables() + "\\", backwards}) {
    const Library library(makeDirectory("separator" + std::to_string(++number)));
    library.load(directory);
    EXPECT_GT(library.probe(KRK), 0) << directory;
  }
}

TEST(Library, TreatsDamagedTablesAsNotHeld) {
  const std::string intact = tables() + "/krk.wdl";
  const auto size = static_cast<std::streamoff>(fs::file_size(intact));
  const auto overwrite = [](const std::string& path, std::streamoff place, char byte) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(place);
    file.put(byte);
  };
  const std::pair<const char*, std::function<void(const std::string&)>> damages[] = {
      {"empty", [](const std::string& path) { fs::resize_file(path, 0); }},
      {"short", [&](const std::string& path) { fs::resize_file(path, size - 1); }},
      {"long", [&](const std::string& path) { fs::resize_file(path, size + 1); }},
      {"magic", [&](const std::string& path) { overwrite(path, 0, 'X'); }},
      {"version", [&](const std::string& path) { overwrite(path, 8, 9); }},
      {"data", [&](const std::string& path) { overwrite(path, size / 2, '\xf5'); }},
      {"other",
       [](const std::string& path) {
         fs::copy_file(tables() + "/kqk.wdl", path, fs::copy_options::overwrite_existing);
       }},
      {"directory",
       [](const std::string& path) {
         fs::remove(path);
         fs::create_directory(path);
       }},
  };
  for (const auto& [name, damage] : damages) {
    const std::string directory = makeDirectory(name);
    const Library library(directory);
    fs::copy_file(tables() + "/kqk.wdl", directory + "/kqk.wdl");
    fs::copy_file(intact, directory + "/krk.wdl");
    damage(directory + "/krk.wdl");
    library.load(directory);
    EXPECT_EQ(library.probe(KRK), NOT_HELD) << name;
    EXPECT_GT(library.probe(KQK), 0) << name;
    // A whole table may come later.
    library.load(tables());
    EXPECT_GT(library.probe(KRK), 0) << name;
  }
}

// The file is open: what happens to it must not harm, and is told once.
TEST(Library, OutlivesAFileThatShrinks) {
  const std::string directory = makeDirectory("shrinking");
  const Library library(directory);
  const std::string path = directory + "/krk.wdl";
  fs::copy_file(tables() + "/krk.wdl", path);
  fs::copy_file(tables() + "/kqk.wdl", directory + "/kqk.wdl");
  library.load(directory);
  library.takeLog();
  fs::resize_file(path, 100);
  fs::remove(directory + "/kqk.wdl");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(library.probe(KRK), NOT_HELD);
  EXPECT_GT(library.probe(KQK), 0) << "a file without a name has its data";
  const std::vector<std::string> log = library.takeLog();
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log.front().find(path), std::string::npos) << log.front();
}

// Programs ask for KPK, KPPK and KPPKP to find out what there is.
TEST(Library, ServesWhatIsThere) {
  const std::string directory = makeDirectory("some");
  const Library library(directory);
  constexpr const char* SAMPLES[] = {"7k/8/8/8/8/P7/8/K7 w", "7k/8/8/8/8/PP6/8/K7 w",
                                     "7k/7p/8/8/8/PP6/8/K7 w"};
  fs::copy_file(tables() + "/krk.wdl", directory + "/krk.wdl");
  library.takeLog();
  library.load(directory);
  const std::vector<std::string> log = library.takeLog();
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log.front().find("KQK, KBK, KNK, KPK"), std::string::npos) << log.front();
  EXPECT_GT(library.probe(SAMPLES[0]), 0);
  EXPECT_EQ(library.probe(SAMPLES[1]), NOT_HELD);
  EXPECT_EQ(library.probe("7k/8/8/8/8/1P6/8/K7 w"), NOT_HELD);
  library.load(tables());
  EXPECT_GT(library.probe(SAMPLES[0]), 0);
  EXPECT_GT(library.probe(SAMPLES[1]), 0);
  EXPECT_EQ(library.probe(SAMPLES[2]), NOT_HELD);
  library.takeLog();
}

class ProbeTest : public testing::Test {
 protected:
  ProbeTest() : library_(makeDirectory("probe")) { library_.load(tables()); }
  Library library_;
};

TEST_F(ProbeTest, RefusesWhatIsNoPosition) {
  const Query good = Query::of(KRK);
  ASSERT_GT(library_.probe(good), 0);
  const std::function<void(Query&)> spoils[] = {
      [](Query& query) { query.side = 2; },
      [](Query& query) { query.side = -1; },
      [](Query& query) { query.king[0] = 64; },
      [](Query& query) { query.king[1] = -1; },
      [](Query& query) { query.king[1] = query.king[0]; },
      [](Query& query) { query.king[1] = query.king[0] + 9; },
      [](Query& query) { query.men[0][1] = query.king[0]; },
      [](Query& query) { query.men[0][1] = 64; },
      [](Query& query) { query.men[0][1] = -1; },
      [](Query& query) { query.men[1] = query.men[0]; },
      // White gives check and is to move.
      [](Query& query) { query.men[0][1] = query.king[1] + 1; },
  };
  int number = 0;
  for (const auto& spoil : spoils) {
    Query query = good;
    spoil(query);
    EXPECT_EQ(library_.probe(query), NOT_HELD) << number++;
  }
  // Kings, no men, and pawns on the first and the last rank.
  for (const std::array<int, 2>& man :
       {std::array{1, 0}, {7, 0}, {13, 0}, {-3, 0}, {6, 0}, {12, 63}}) {
    Query query = good;
    query.men[0] = man;
    EXPECT_EQ(library_.probe(query), NOT_HELD) << man[0];
  }
  EXPECT_EQ(library_.probe("8/8/8/3k4/8/8/8/4K3 w"), 0);
}

// Turning the board about, exchanging the colours or naming the men in another order changes
// nothing; no arguments do harm.
TEST_F(ProbeTest, AnswersAlikeForAlikePositions) {
  std::mt19937 random(20);
  const auto number = [&random](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  // A man's square in a mirror, and a man of the other colour; what is none stays as it is.
  const auto flip = [](int square, int mirror) {
    return square < 0 || square > 63 ? square : square ^ mirror;
  };
  const auto exchange = [](int code) { return code == 0 ? 0 : code < 7 ? code + 6 : code - 6; };
  int held = 0;
  for (int i = 0; i < 100000; ++i) {
    Query query{number(0, 1), {number(0, 63), number(0, 63)}, {}};
    for (auto& man : query.men) man = {number(0, 12), number(-1, 64)};
    if (number(0, 3) != 0) query.men[2] = {0, 0};
    Query turned = query;
    Query exchanged{1 - query.side, {query.king[1] ^ 56, query.king[0] ^ 56}, {}};
    for (int& king : turned.king) king ^= 7;
    for (std::size_t j = 0; j < 3; ++j) {
      const auto [code, square] = query.men[j];
      turned.men[j] = {code, flip(square, 7)};
      exchanged.men[2 - j] = {exchange(code), flip(square, 56)};
    }
    const int score = library_.probe(query);
    ASSERT_EQ(library_.probe(turned), score) << i;
    ASSERT_EQ(library_.probe(exchanged), score) << i;
    if (score != NOT_HELD) ++held;
  }
  EXPECT_GT(held, 5000);
}

TEST_F(ProbeTest, AnswersManyThreadsAtOnce) {
  const Library late(makeDirectory("threads"));
  const Query query = Query::of(KRK);
  std::atomic<int> wrong = 0;
  {
    std::array<std::jthread, 4> threads;
    for (std::jthread& thread : threads) {
      thread = std::jthread([&] {
        // Held from some moment on, and then for good.
        bool isHeld = false;
        for (int n = 0; n < 20000 || !isHeld; ++n) {
          const int score = late.probe(query);
          if (score == NOT_HELD ? isHeld : score <= 0) ++wrong;
          isHeld = score != NOT_HELD;
        }
      });
    }
    late.load(tables());
  }
  EXPECT_EQ(wrong, 0);
}

TEST(Generator, ExplainsItselfAndReportsFailure) {
  EXPECT_EQ(generate("2> /dev/null"), "failed\n");
  EXPECT_EQ(generate("/tmp KXK 2> /dev/null"), "failed\n");
  EXPECT_EQ(generate("/tmp 6 2> /dev/null"), "failed\n");
  EXPECT_EQ(generate("--threads 0 /tmp KQK 2> /dev/null"), "failed\n");
  EXPECT_NE(generate("/dev/null/nowhere KQK").find("failed"), std::string::npos);
}

// As after it was killed: an unfinished file, a damaged table, one that is missing.
TEST(Generator, MakesOnlyWhatIsMissing) {
  const std::string directory = makeDirectory("anew");
  generate(directory + " KPK");
  fs::resize_file(directory + "/krk.wdl", 100);
  fs::remove(directory + "/kqk.wdl");
  std::ofstream(directory + "/kqk.wdl.part") << "EGBB";
  const std::string again = generate(directory + " KPK");
  EXPECT_NE(again.find("KRK"), std::string::npos);
  EXPECT_NE(again.find("KQK"), std::string::npos);
  EXPECT_EQ(again.find("KBK"), std::string::npos);
  EXPECT_FALSE(fs::exists(directory + "/kqk.wdl.part"));
  EXPECT_EQ(generate(directory + " KPK").find("KRK"), std::string::npos);
}

}  // namespace
}  // namespace bitbase_test
