#include "egbb/bitbases.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "board/fen.h"
#include "egbb/libraries/fake_library.h"
#include "egbb/win_score.h"

namespace ombrin {
namespace {

template <typename Call>
std::string printedBy(Call&& call) {
  testing::internal::CaptureStdout();
  call();
  return testing::internal::GetCapturedStdout();
}

const std::string LIBRARIES = OMBRIN_EGBB_LIBRARIES;  // with a slash at the end

std::string opened(const std::string& directory) {
  Bitbases bitbases;
  return printedBy([&] { EXPECT_FALSE(bitbases.open(directory)); }) + printedBy([&] {
           EXPECT_FALSE(bitbases.available());
           EXPECT_FALSE(bitbases.load(16));
         });
}

TEST(BitbasesOpen, SaysWhatIsMissing) {
  const std::string none = "EGBB: not available\n";
  const std::string warning = "EGBB: WARNING egbb dll not found: ";
  EXPECT_EQ(opened(""), warning + "egbb\\egbbdll.dll\n" + none);
  EXPECT_EQ(opened("no/such"), warning + "no/such\\egbbdll.dll\n" + none);
  EXPECT_EQ(opened("no\\such\\"), warning + "no\\such\\egbbdll.dll\n" + none);
  EXPECT_EQ(opened(LIBRARIES + "without_load"), "EGBB: 5men load not supported\n" + none);
  EXPECT_EQ(opened(LIBRARIES + "without_probe"), "EGBB: 5men probe not supported\n" + none);

  const std::string directory = testing::TempDir() + "text_library";
  std::filesystem::create_directories(directory);
  std::ofstream(directory + "/egbbdll.dll") << "not a library\n";
  EXPECT_EQ(opened(directory), warning + directory + "\\egbbdll.dll\n" + none);
}

class BitbasesTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(bitbases_.open(LIBRARIES + "complete"));
    ASSERT_TRUE(library_.open(LIBRARIES + "complete/egbbdll.dll"));
    fake_ = library_.function<FakeLibraryFunction>("fake_library")();
    *fake_ = {};
  }

  std::optional<Score> probed(const char* fen) {
    EXPECT_TRUE(setFen(board_, fen)) << fen;
    return bitbases_.probe(board_);
  }

  Bitbases bitbases_;
  SharedLibrary library_;
  FakeLibrary* fake_ = nullptr;
  Board board_;
};

TEST_F(BitbasesTest, LoadingFindsOutWhatIsHeld) {
  for (const int men : {5, 4, 3, 0}) {
    Bitbases bitbases;
    ASSERT_TRUE(bitbases.open(LIBRARIES + "complete"));
    EXPECT_EQ(bitbases.maxMen(), 5);
    fake_->heldMen = men;
    std::string expected;
    for (const int kind : {3, 4, 5}) {
      expected += "egbb." + std::to_string(kind) + "men=" + (men >= kind ? "1\n" : "0\n");
    }
    expected += "EGBB: loaded, maxmen=" + std::to_string(men) + ", ram=4\n";
    EXPECT_EQ(printedBy([&] { EXPECT_TRUE(bitbases.load(16)); }), expected);
    EXPECT_EQ(bitbases.maxMen(), men);
    EXPECT_EQ(bitbases.memoryMen(), 4);
  }
}

TEST_F(BitbasesTest, LoadsOnceWithACacheOfAtLeastSixteenMegabytes) {
  const std::pair<int, int> cases[] = {
      {8, 16 << 20}, {100, 100 << 20}, {2047, 2047 << 20}, {4096, 2047 << 20}};
  for (const auto& [megabytes, bytes] : cases) {
    Bitbases bitbases;
    ASSERT_TRUE(bitbases.open(LIBRARIES + "complete/"));
    fake_->loads = 0;
    printedBy([&] { bitbases.load(megabytes); });
    EXPECT_EQ(fake_->cacheBytes, bytes);
    EXPECT_EQ(fake_->mode, 1);
    EXPECT_EQ(fake_->directory, LIBRARIES + "complete/\\");
    EXPECT_EQ(printedBy([&] { EXPECT_TRUE(bitbases.load(megabytes)); }), "");
    EXPECT_EQ(fake_->loads, 1);
  }
}

TEST_F(BitbasesTest, DescribesThePositionToTheLibrary) {
  using Arguments = std::array<int, 9>;
  EXPECT_EQ(probed("8/8/8/3k4/8/8/8/7K w - - 0 1"), DRAW);
  EXPECT_EQ(fake_->lastProbe, (Arguments{0, 7, 35}));
  probed("3n4/8/8/3k4/8/8/1P6/Q6K b - - 0 1");
  EXPECT_EQ(fake_->lastProbe, (Arguments{1, 7, 35, 2, 0, 6, 9, 11, 59}));
  probed("3k4/7p/8/8/8/8/8/R1B4K w - - 0 1");
  EXPECT_EQ(fake_->lastProbe, (Arguments{0, 7, 59, 3, 0, 4, 2, 12, 55}));
  probed("3k2qr/3b4/8/8/8/8/8/K7 w - - 0 1");
  EXPECT_EQ(fake_->lastProbe, (Arguments{0, 0, 59, 8, 62, 9, 63, 10, 51}));
}

TEST_F(BitbasesTest, AsksOnlyWhatMayBeHeld) {
  const char* five = "3k2qr/3b4/8/8/8/8/8/K7 w - - 0 1";
  EXPECT_EQ(probed("3k2qr/3b4/8/8/8/8/8/KN6 w - - 0 1"), std::nullopt);
  EXPECT_EQ(fake_->probes, 0);
  EXPECT_EQ(probed(five), DRAW);
  EXPECT_EQ(fake_->probes, 1);
  fake_->heldMen = 4;
  EXPECT_EQ(probed(five), std::nullopt);
  printedBy([&] { bitbases_.load(16); });
  fake_->probes = 0;
  EXPECT_EQ(probed(five), std::nullopt);
  EXPECT_EQ(fake_->probes, 0);
}

TEST_F(BitbasesTest, TurnsAnswersIntoScores) {
  // With a pawn the answer is the score, whatever it is.
  for (const int answer : {1, 4321, -77, 0}) {
    fake_->answer = answer;
    EXPECT_EQ(probed("8/8/8/3k4/8/8/P7/K7 w - - 0 1"), Score(answer));
    EXPECT_EQ(probed("8/8/8/3k4/8/8/P7/K7 b - - 0 1"), Score(answer));
  }
  // Without one only its sign counts, and the winner may be either side.
  for (const int answer : {1, 4321}) {
    fake_->answer = answer;
    const auto win = probed("8/8/8/4k3/8/8/8/KQ6 w - - 0 1");
    EXPECT_EQ(win, winScore(board_, WHITE));
    fake_->answer = -answer;
    EXPECT_EQ(probed("8/8/8/4k3/8/8/8/KQ6 b - - 0 1"), -*win);
    EXPECT_EQ(probed("8/8/8/4k3/8/8/8/KQ6 w - - 0 1"), -winScore(board_, BLACK));
  }
}

TEST(WinScore, AddsUpMaterialAndThePlacesOfTheKings) {
  const struct {
    const char* fen;
    Color winner;
    int score;
  } cases[] = {
      {"8/8/8/4k3/8/8/8/KQ6 w - - 0 1", WHITE, 5000 + 1000 - 9 - 3 - 2 * 3},
      {"8/8/8/4k3/8/8/8/KQ6 w - - 0 1", BLACK, 5000 - 1000 - 100 + 3 - 3 + 2 * 9},
      {"3k4/8/8/8/3K4/8/8/R6r w - - 0 1", WHITE, 5000 - 100 + 3 - 2 + 7 / 2 + 2 * 6},
      // The corner of the bishop's colour is near for the dark-squared one only when it is a1 or
      // h8.
      {"k7/8/1K6/8/8/8/8/4BN2 w - - 0 1", WHITE, 5000 + 600 - 4 - 1 - 7 / 2 - 8 * 7},
      {"k7/8/1K6/8/8/8/8/3B1N2 w - - 0 1", WHITE, 5000 + 600 - 4 - 1 - 7 / 2 - 8 * 0},
      {"8/8/8/8/5k2/P7/8/KQ6 w - - 0 1", WHITE, 0},
  };
  Board board;
  for (const auto& test : cases) {
    ASSERT_TRUE(setFen(board, test.fen)) << test.fen;
    EXPECT_EQ(winScore(board, test.winner).value(), test.score) << test.fen;
  }
}

// Every entry of the tables leaves its mark on this number.
TEST(WinScore, HasItsSignature) {
  Board board;
  std::uint64_t signature = 0;
  for (int i = 0; i < 64 * 64; ++i) {
    const Square winner = Square::at(i % 8, i / 8 % 8);
    const Square loser = Square::at(i / 64 % 8, i / 512);
    if (winner == loser) continue;
    for (const Color color : {WHITE, BLACK}) {
      board.clear();
      board.addPiece(color, KING, winner);
      board.addPiece(~color, KING, loser);
      signature = signature * 31 + static_cast<std::uint64_t>(winScore(board, color).value());
      for (const PieceType type : {BISHOP, KNIGHT}) {
        Square square = A1;
        while (!board.at(square).isEmpty()) square += RIGHT;
        board.addPiece(color, type, square);
      }
      signature = signature * 31 + static_cast<std::uint64_t>(winScore(board, color).value());
    }
  }
  EXPECT_EQ(signature, 9144589013541098818U);
}

}  // namespace
}  // namespace ombrin
