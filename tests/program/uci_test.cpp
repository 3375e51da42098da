#include <algorithm>
#include <array>
#include <regex>

#include "board/fen.h"
#include "board/notation.h"
#include "program/session.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

constexpr char INFO[] =
    R"(info depth \d+ seldepth \d+ score (cp -?\d+|mate -?\d+) time \d+ nodes \d+( nps \d+)? pv ([a-h][1-8][a-h][1-8][qrbn]? )*)";
constexpr char CURRENT_MOVE[] =
    R"(info currmove [a-h][1-8][a-h][1-8][qrbn]? currmovenumber \d+ time \d+ nodes \d+( nps \d+)? hashfull \d+)";
constexpr char BEST_WITH_PONDER[] = "bestmove [a-h][1-8][a-h][1-8] ponder [a-h][1-8][a-h][1-8]";
constexpr char BEST_ALONE[] = "bestmove [a-h][1-8][a-h][1-8]";
constexpr char NO_BEST[] = "bestmove 0000";

// With traces, so that a test learns when a search has ended without an answer.
constexpr char TRACED[] = "search.nthreads=1\nuci.trace=1\n";

bool matches(const std::string& line, const std::string& pattern) {
  return std::regex_match(line, std::regex(pattern));
}

TEST(Uci, IntroducesItself) {
  Session session("search.nthreads=1\n");
  session.send("uci");
  session.waitFor("phash=");
  const Lines announced = session.linesUpTo("uciok");
  EXPECT_EQ(joined(announced),
            "\n"
            "id name ombrin-0.5c\n"
            "id author Quorvath\n"
            "option name Hash type spin default 64 min 1 max 4096\n"
            "option name Clear Hash type button\n"
            "option name Ponder type check default false\n"
            "option name OwnBook type check default true\n"
            "option name Threads type spin default 1 min 1 max 8\n"
            "option name Move Overhead type spin default 0 min 0 max 60000\n"
            "option name UCI_AnalyseMode type check default false\n"
            "option name UCI_Opponent type string default <empty>\n"
            "option name UCI_EngineAbout type string default ombrin by Quorvath\n"
            "uciok\n");
  // From now on nothing but protocol lines: no prompt, no log, no board.
  EXPECT_EQ(session.ask("position startpos moves e2e4").size(), 0U);
  EXPECT_EQ(session.ask("").size(), 0U);
  // Whatever is announced is taken.
  for (const std::string& line : announced) {
    if (!line.starts_with("option ")) continue;
    session.ask("set" + line.substr(0, line.find(" type")) + " value x");
  }
  EXPECT_EQ(session.fileText("ombrin-0.5c-error.log"), "");
}

TEST(Uci, ReportsASearch) {
  Session session;
  session.ask("uci");
  session.send("position startpos moves e2e4 e7e5");
  session.send("go depth 7");
  const Lines lines = session.linesUpTo("bestmove");
  int iterations = 0;
  for (const std::string& line : lines) {
    if (line.starts_with("bestmove")) {
      EXPECT_TRUE(matches(line, BEST_WITH_PONDER)) << line;
    } else {
      EXPECT_TRUE(matches(line, INFO) || matches(line, CURRENT_MOVE) ||
                  matches(line, "info depth \\d+"))
          << line;
      if (matches(line, "info depth \\d+")) ++iterations;
    }
  }
  EXPECT_EQ(iterations, 7);
  EXPECT_TRUE(lines[lines.size() - 2].starts_with("info depth 7 seldepth"));
}

TEST(Uci, AnswersBeforeItIsEntered) {
  Session session;
  session.send("go depth 1");
  EXPECT_TRUE(matches(session.waitFor("bestmove"), "bestmove .*"));
}

// ---- the state table: each row starts in a new process ----

struct Row {
  const char* name;
  Lines commands;
  // The lines that then come, those with these beginnings, in this order; traces tell the search's
  // end.
  Lines answers;
};
void PrintTo(const Row& row, std::ostream* stream) {
  *stream << row.name;
}

class UciStates : public testing::TestWithParam<Row> {};

constexpr char SHORT_PONDER[] = "go ponder depth 2 wtime 60000 btime 60000";

TEST_P(UciStates, Answers) {
  Session session(TRACED);
  Lines answers;
  for (const std::string& command : GetParam().commands) {
    if (command.starts_with("wait ")) {
      const Lines lines = session.linesUpTo(command.substr(5));
      for (const std::string& line : lines) {
        if (line.starts_with("bestmove")) answers.push_back(line);
      }
    } else {
      session.send(command);
    }
  }
  for (const std::string& line : session.ask("isready")) {
    if (line.starts_with("bestmove")) answers.push_back(line);
  }
  ASSERT_EQ(answers.size(), GetParam().answers.size()) << joined(answers);
  for (std::size_t i = 0; i < answers.size(); ++i) {
    EXPECT_TRUE(matches(answers[i], GetParam().answers[i])) << answers[i];
  }
}

const std::string PLACE = "position startpos moves e2e4 e7e5";

INSTANTIATE_TEST_SUITE_P(
    Rows, UciStates,
    testing::Values(
        Row{"idle: nothing to answer", {"uci", "stop", "ponderhit"}, {}},
        Row{"position: stop", {"uci", PLACE, "stop"}, {NO_BEST}},
        Row{"position: ponderhit",
            {"uci", PLACE, "ponderhit", "go depth 3", "wait bestmove 0000", "wait bestmove"},
            {NO_BEST, BEST_WITH_PONDER}},
        Row{"searching: ends", {"uci", PLACE, "go depth 3", "wait bestmove"}, {BEST_WITH_PONDER}},
        Row{"searching: stop",
            {"uci", PLACE, "go infinite", "wait info depth 3", "stop"},
            {BEST_WITH_PONDER}},
        Row{"searching: ponderhit is ignored",
            {"uci", PLACE, "go infinite", "ponderhit", "wait info depth 3", "stop"},
            {BEST_WITH_PONDER}},
        Row{"searching: position",
            {"uci", PLACE, "go infinite", "wait info depth 3", PLACE},
            {BEST_WITH_PONDER}},
        Row{"searching: go",
            {"uci", PLACE, "go infinite", "wait info depth 3", "go depth 3", "wait bestmove",
             "wait bestmove"},
            {BEST_WITH_PONDER, BEST_WITH_PONDER}},
        Row{"searching: options",
            {"uci", PLACE, "go infinite", "wait info depth 3", "setoption name Hash value 8",
             "setoption name Clear Hash", "setoption name Threads value 2", "stop"},
            {BEST_WITH_PONDER}},
        Row{"idle: one answer for a go",
            {"uci", PLACE, "go depth 3", "wait bestmove", "stop", "ponderhit", "stop"},
            {BEST_WITH_PONDER}},
        Row{"analysing: what ends by itself is held back",
            {"uci", PLACE, "go infinite depth 2", "wait trace ##########[_idle_]: finished() ok",
             "isready", "wait readyok", "stop", "stop"},
            {BEST_WITH_PONDER}},
        Row{"pondering: the answer is held back",
            {"uci", PLACE, SHORT_PONDER, "wait trace ##########[_idle_]: finished() ok"},
            {}},
        Row{"idle after pondering: ponderhit",
            {"uci", PLACE, SHORT_PONDER, "wait trace ##########[_idle_]: finished() ok",
             "ponderhit"},
            {BEST_WITH_PONDER}},
        Row{"idle after pondering: stop",
            {"uci", PLACE, SHORT_PONDER, "wait trace ##########[_idle_]: finished() ok", "stop"},
            {BEST_WITH_PONDER}},
        Row{"pondering: ponderhit",
            {"uci", PLACE, "go ponder movetime 100", "wait info depth 3", "ponderhit",
             "wait bestmove"},
            {BEST_WITH_PONDER}},
        Row{"pondering: stop",
            {"uci", PLACE, "go ponder", "wait info depth 3", "stop"},
            {BEST_WITH_PONDER}},
        Row{"pondering: position",
            {"uci", PLACE, "go ponder", "wait info depth 3", PLACE},
            {BEST_WITH_PONDER}},
        Row{"refused position",
            {"uci", "position fen 8/8/8/8/8/8/8/8 w - - moves e2e4", "go wtime 1000",
             "wait bestmove", PLACE, "go depth 3", "wait bestmove"},
            {NO_BEST, BEST_WITH_PONDER}},
        Row{"mated",
            {"uci", "position startpos moves f2f3 e7e5 g2g4 d8h4", "go infinite",
             "wait trace ##########[_idle_]: finished() ok", "stop"},
            {NO_BEST}},
        Row{"stalemate",
            {"uci", "position fen 7k/5K2/6Q1/8/8/8/8/8 b - -", "go movetime 10", "wait bestmove"},
            {NO_BEST}}),
    [](const auto& test) {
      std::string name = test.param.name;
      std::replace_if(
          name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
      return name;
    });

// ---- limits ----

TEST(Uci, ForgetsTheLimitsOfEarlierSearches) {
  Session session;
  session.ask("uci");
  for (const char* tiny : {"go movetime 1", "go wtime 1 btime 1", "go nodes 1"}) {
    session.send("position startpos");
    session.send(tiny);
    session.waitFor("bestmove");
    session.send("position startpos");
    session.send("go depth 6");
    const Lines lines = session.linesUpTo("bestmove");
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("info depth 6 ")) << tiny;
  }
  session.send("position startpos");
  session.send("go depth 1");
  session.waitFor("bestmove");
  session.send("position startpos");
  session.send("go nodes 20000");
  const Lines lines = session.linesUpTo("bestmove");
  EXPECT_FALSE(lines[lines.size() - 2].starts_with("info depth 1 "));
}

TEST(Uci, IgnoresWhatIsNoNumber) {
  Session session;
  session.ask("uci");
  session.send("position startpos");
  session.send("go wtime soon depth deep depth 4 nodes -7 searchmoves e2e4 movetime");
  const Lines lines = session.linesUpTo("bestmove");
  EXPECT_TRUE(lines[lines.size() - 2].starts_with("info depth 4 "));
}

TEST(Uci, FindsMates) {
  const struct {
    const char* fen;
    const char* score;
    const char* move;
  } mates[] = {
      {"6k1/5ppp/8/8/8/8/5PPP/4R1K1 w - -", " score mate 1 ", "e1e8"},
      {"7k/8/8/8/8/8/R7/1R5K w - -", " score mate 2 ", nullptr},
  };
  Session session;
  session.ask("uci");
  for (const auto& mate : mates) {
    session.send(std::string("position fen ") + mate.fen);
    session.send("go depth 8");
    const Lines lines = session.linesUpTo("bestmove");
    EXPECT_NE(lines[lines.size() - 2].find(mate.score), std::string::npos) << joined(lines);
    if (mate.move != nullptr) {
      EXPECT_TRUE(lines.back().ends_with(mate.move)) << lines.back();
    }
  }
}

// ---- setting up and logging ----

TEST(Uci, PlaysTheMovesOfAPosition) {
  const struct {
    const char* position;
    const char* fen;
  } cases[] = {
      {"position startpos", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 0"},
      {"position startpos moves e2e4 .e7e5 e7e5",
       "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"},
      {"position startpos moves e2e4 e2e4 e7e5",
       "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"},
      {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8q e8e7",
       "Q7/4k3/8/8/8/8/8/4K3 w - - 1 2"},
      {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - moves", "4k3/P7/8/8/8/8/8/4K3 w - - 0 0"},
  };
  Session session;
  for (const auto& [position, fen] : cases) {
    EXPECT_TRUE(contains(session.ask(position), fen)) << position;
  }
}

TEST(Uci, PlaysAGameOfTwoThousandPlies) {
  Session session;
  session.ask("uci");
  std::string position = "position startpos moves";
  for (int round = 0; round < 500; ++round) position += " g1f3 g8f6 f3g1 f6g8";
  session.send(position);
  session.send("go depth 3");
  EXPECT_TRUE(matches(session.waitFor("bestmove"), BEST_ALONE + std::string("( ponder .*)?")));
}

TEST(Uci, ReportsOptionsThatAreNone) {
  Session session;
  EXPECT_TRUE(contains(session.ask("setoption name Foo value 1"), "Option not supported: Foo"));
  EXPECT_TRUE(contains(session.ask("setoption Threads value 1"), "setting cpus=1"));
  EXPECT_TRUE(contains(session.ask("setoption name Hash"), "resizing hash to 32Mb"));
  EXPECT_EQ(joined(session.ask("setoption name Hash value many")),
            "setoption: not a number: many\n");
  EXPECT_TRUE(contains(session.ask("setoption name clear  hash"), "tt cleared"));
  EXPECT_TRUE(contains(session.ask("setoption name UCI_Opponent value GM 2800 human Gray Tabby"),
                       "Opponent=GM Gray, human, elo=2800"));
  EXPECT_TRUE(contains(session.ask("setoption name PONDER value True"), "canponder=1"));
  EXPECT_TRUE(contains(session.ask("setoption name OwnBook value false"), "usebook=0"));
}

TEST(Uci, LogsToTheNextFreeFile) {
  Session session("uci.logdir=logs\\deep\nsearch.nthreads=1\n");
  session.ask("");
  std::filesystem::create_directories(session.directory() / "logs/deep");
  for (const char* taken : {"ombrin-0000.log", "ombrin-0001.log"}) {
    std::ofstream(session.directory() / "logs/deep" / taken) << "taken";
  }
  EXPECT_TRUE(contains(session.ask("uci"), "file=logs\\deep/ombrin-0002.log"));
  session.send("setoption name Foo");
  session.send("position startpos moves e2e4");
  session.send("go movetime 20");
  session.waitFor("bestmove");
  session.send("setoption name Clear Hash");  // waits until the search thread has said it all
  session.send("quit");
  EXPECT_EQ(session.exitStatus(), 0);
  const std::string log = session.fileText("logs/deep/ombrin-0002.log");
  for (const char* part : {R"(\d{10}:<--uciok\n)", R"(\d{10}:positionstartpos moves e2e4\n)",
                           R"(\n +a   b   c   d)", R"(got hard moves/millis=1/20\n)",
                           R"(Nominal search time is 0.02 seconds, infinite=0, nodes=0\n)",
                           R"(\d{10}:<--bestmove [a-h][1-8]x?[a-h][1-8]\+?\n\d{10}:<--ponder )",
                           R"(Uci:First search out of book is at 2 ply\n)", R"(exit\(\)!\n$)"}) {
    EXPECT_TRUE(std::regex_search(log, std::regex(part))) << part << " is not in\n" << log;
  }
  EXPECT_EQ(session.fileText("ombrin-0.5c-error.log"), "Option not supported: Foo\n");
  EXPECT_EQ(session.fileText("logs/deep/ombrin-0000.log"), "taken");
}

TEST(Uci, DoesWithoutALog) {
  // A file stands where the directory should be, and where the error log should be a directory is.
  Session session("uci.logdir=blocked/logs\n");
  session.ask("");
  std::ofstream(session.directory() / "blocked") << "";
  std::filesystem::create_directory(session.directory() / "ombrin-0.5c-error.log");
  EXPECT_TRUE(contains(session.ask("uci"), "could not create logdir: blocked/logs"));
  session.send("go depth 2");
  EXPECT_TRUE(matches(session.waitFor("bestmove"), BEST_WITH_PONDER));
}

// ---- whole games ----

TEST(Uci, PlaysLegalGamesAtEverySpeed) {
  Session session("uci.timegap=0\nsearch.nthreads=2\n");
  session.ask("uci");
  for (const char* limit : {"wtime 300 btime 300", "movetime 2", "nodes 300", "depth 2"}) {
    Board board;
    ASSERT_TRUE(setFen(board, START_FEN));
    std::string moves;
    for (int ply = 0; ply < 60; ++ply) {
      if (legalMoves(board).empty()) break;
      session.send("position startpos moves" + moves);
      session.send(std::string("go ") + limit);
      const std::string text = session.waitFor("bestmove ").substr(9, 5);
      const Move move = parseMove(board, text);
      ASSERT_FALSE(move.isNull()) << limit << moves << ": " << text;
      makeMove(board, move);
      moves += " " + moveToCoordinates(move);
    }
  }
}

}  // namespace
}  // namespace ombrin
