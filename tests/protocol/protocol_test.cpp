#include <gtest/gtest.h>

#include <fstream>

#include "protocol/log_file_namer.h"
#include "protocol/report_throttle.h"
#include "protocol/uci_lines.h"
#include "protocol/winboard_lines.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

constexpr Move E4{Square(0x14), Square(0x34)};
constexpr Move D4{Square(0x13), Square(0x33)};

TEST(UciLines, PrintScores) {
  const struct {
    int score;
    const char* text;
  } cases[] = {
      {0, " score cp 0 "},           {-35, " score cp -35 "},     {29000, " score cp 29000 "},
      {-29000, " score cp -29000 "}, {29999, " score mate 1 "},   {29995, " score mate 3 "},
      {29994, " score mate 3 "},     {-29996, " score mate -2 "}, {-29998, " score mate -1 "},
      {-30000, " score mate 0 "},
  };
  for (const auto& [score, text] : cases) {
    const std::string line = uciInfoLine({.depth = 1, .selectiveDepth = 1, .score = score});
    EXPECT_NE(line.find(text), std::string::npos) << line;
  }
}

TEST(UciLines, AreWhole) {
  const Move queens(Square(0x64), Square(0x74), EMPTY, Move::promotionTo(QUEEN));
  SearchReport report{.depth = 12, .selectiveDepth = 20, .score = 31, .nodes = 500, .time = 99};
  report.line.set(std::array{E4, queens});
  EXPECT_EQ(uciInfoLine(report),
            "info depth 12 seldepth 20 score cp 31 time 99 nodes 500 pv e2e4 e7e8q \n");
  report = {.depth = 1, .selectiveDepth = 2, .score = 3, .nodes = 10'000'000'000, .time = 100};
  EXPECT_EQ(uciInfoLine(report),
            "info depth 1 seldepth 2 score cp 3 time 100 nodes 10000000000 nps 100000000000\n");
  EXPECT_EQ(uciCurrentMoveLine({.move = E4, .nodes = 7, .time = 99}),
            "info currmove e2e4 currmovenumber 1 time 99 nodes 7 hashfull 0\n");
  EXPECT_EQ(uciCurrentMoveLine({1, 19, D4, 7000, 2000, 1000}),
            "info currmove d2d4 currmovenumber 20 time 2000 nodes 7000 nps 3500 hashfull 1000\n");
  EXPECT_EQ(uciBestMoveLine(E4, D4), "bestmove e2e4 ponder d2d4\n");
  EXPECT_EQ(uciBestMoveLine(E4, NULL_MOVE), "bestmove e2e4\n");
  EXPECT_EQ(uciBestMoveLine(NULL_MOVE, NULL_MOVE), "bestmove 0000\n");
}

TEST(WinboardLines, StartWithThePonderMove) {
  SearchReport report{.depth = 5, .score = -20, .nodes = 42, .time = 1239};
  report.line.set(std::array{E4, D4});
  EXPECT_EQ(winboardThinkingLine(report, NULL_MOVE), "5 -20 123 42 e2e4 d2d4");
  EXPECT_EQ(winboardThinkingLine(report, D4), "5 -20 123 42 d2d4 e2e4 d2d4");
}

TEST(WinboardLines, CountMatesInMoves) {
  const struct {
    Score score;
    const char* text;
  } cases[] = {
      {Score::mateIn(1), "100001"},   {Score::mateIn(5), "100003"},
      {Score::matedIn(2), "-100001"}, {Score::matedIn(6), "-100003"},
      {Score::matedIn(0), "-100000"}, {MATE_BOUND, "29000"},
  };
  for (const auto& [score, text] : cases) {
    const SearchReport report{.depth = 1, .score = score};
    EXPECT_EQ(winboardThinkingLine(report, NULL_MOVE), std::string("1 ") + text + " 0 0");
  }
}

TEST(Throttle, HoldsBackWhatIsStable) {
  const struct {
    int depth;
    int score;
    Move move;
    std::uint64_t elapsed;
    bool admitted;
  } reports[] = {
      {1, 10, E4, 0, true},     // new
      {9, 10, E4, 50, true},    // the same, 8 plies deeper
      {10, 10, E4, 50, false},  // 9 plies deeper and early
      {10, 10, E4, 100, true},  // late enough
      {11, 11, E4, 60, true},   // another score
      {12, 11, D4, 60, true},   // another move
      {20, 11, D4, 60, true},  {21, 11, D4, 60, false},
  };
  ReportThrottle throttle;
  EXPECT_TRUE(throttle.admitCurrentMove({.time = 0}));  // sets the next report's time to 100
  for (const auto& report : reports) {
    EXPECT_EQ(throttle.admitBestLine({.depth = report.depth,
                                      .score = report.score,
                                      .time = report.elapsed,
                                      .bestMove = report.move}),
              report.admitted)
        << report.depth;
  }
  // The line is stable now, so that even the first move has to wait.
  EXPECT_FALSE(throttle.admitCurrentMove({.time = 99}));
  throttle.reset();
  EXPECT_TRUE(throttle.admitCurrentMove({.time = 0}));
  EXPECT_TRUE(throttle.admitCurrentMove({.time = 1}));
  EXPECT_FALSE(throttle.admitCurrentMove({.number = 1, .time = 100}));
  EXPECT_TRUE(throttle.admitCurrentMove({.number = 1, .time = 101}));
}

TEST(LogFileNamer, TakesTheFirstFreeNumber) {
  const TemporaryDirectory directory;
  const std::string logs = (directory.path() / "a/b").string();
  const LogFileNamer namer(logs);
  ASSERT_TRUE(namer.prepareDirectory());
  for (int number = 0; number < 12; ++number) {
    const std::string expected =
        logs + (number < 10 ? "/ombrin-000" : "/ombrin-00") + std::to_string(number) + ".log";
    EXPECT_EQ(namer.nextFreeName(), expected);
    std::ofstream(expected) << "taken";
  }
  EXPECT_FALSE(LogFileNamer(logs + "/ombrin-0000.log/c").prepareDirectory());
}

}  // namespace
}  // namespace ombrin
