#include <random>
#include <regex>

#include "program/session.h"

namespace ombrin {
namespace {

constexpr char START[] = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 0";

TEST(Console, Starts) {
  Session session;
  EXPECT_EQ(session.line(), "");
  EXPECT_EQ(session.line(), "ombrin-0.5c");
  EXPECT_EQ(session.line(), "");
  EXPECT_EQ(session.waitFor("inifile="), "inifile=ombrin.ini");
  EXPECT_EQ(session.line(), "could not load inifile: ombrin.ini");
  EXPECT_TRUE(contains(session.ask(""), START));
}

TEST(Console, ReadsTheIniFileNamedByTheArgument) {
  ChildProcess none({testedProgram(), "one", "two"});
  EXPECT_EQ(none.readAll(Session::DEADLINE), "\nombrin-0.5c\n\nUsage:  ombrin [inifile]\n");
  EXPECT_EQ(none.waitForExit(Session::DEADLINE), 255);

  Session session("search.nthreads=1000\ntt.cachemb=1\nmachine.mhz=1000\n");
  const std::string start = joined(session.ask(""));
  std::smatch match;
  ASSERT_TRUE(std::regex_search(
      start, match, std::regex("!--only (\\d+) cpu's present, using (\\d+) searchthreads\n")));
  EXPECT_EQ(match[1], match[2]);
  EXPECT_TRUE(contains(session.ask("set"), "threads=" + match[1].str()));

  Session single("search.nthreads=1\n");
  EXPECT_FALSE(contains(single.ask(""), "parallel search"));
}

// Commands, and what must appear in the answer to the last one, each part after the one before.
struct Dialogue {
  const char* name;
  Lines commands;
  Lines parts;
};
void PrintTo(const Dialogue& dialogue, std::ostream* stream) {
  *stream << dialogue.name;
}

class ConsoleDialogue : public testing::TestWithParam<Dialogue> {};

TEST_P(ConsoleDialogue, Answers) {
  Session session;
  session.ask("");
  Lines lines;
  for (const std::string& command : GetParam().commands) lines = session.ask(command);
  const std::string answer = joined(lines);
  std::size_t from = 0;
  for (const std::string& part : GetParam().parts) {
    const std::size_t found = answer.find(part, from);
    ASSERT_NE(found, std::string::npos) << part << "\nis not where it should be in\n" << answer;
    from = found + part.size();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, ConsoleDialogue,
    testing::Values(
        Dialogue{"numbered moves",
                 {"1.e4 e5 2. Nf3"},
                 {"1. e2e4   e7e5", "2. g1f3   ...", "KQkq - 1 3"}},
        Dialogue{"castling", {"e4 e5 Nf3 Nc6 Bc4 Bc5 o-o"}, {"4. O-O", " b kq - "}},
        Dialogue{"word without a digit",
                 {"e4 foo", ""},
                 {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq"}},
        Dialogue{"word without a digit reported", {"e4 foo"}, {"no such command: e4\n"}},
        Dialogue{"trailing number", {"e4 2."}, {"no such command: e4\n"}},
        Dialogue{"illegal move", {"e5"}, {"invalid move: e5\n", "no such command: e5\n"}},
        Dialogue{"unknown command", {"frobnicate now"}, {"no such command: frobnicate\n"}},
        Dialogue{"fen", {"fen 8/8/8/8/8/8/8/K6k b - -"}, {"8/8/8/8/8/8/8/K6k b - - 0 0\n"}},
        Dialogue{"fen as typed", {"  8/8/8/8/8/8/8/K6k b - -"}, {"8/8/8/8/8/8/8/K6k b - - 0 0\n"}},
        Dialogue{"fen missing", {"fen"}, {"fen is required\n"}},
        Dialogue{"fen refused", {"fen 8/8/8/8/8/8/8/K5kk b - -"}, {"setfen failed\n", START}},
        Dialogue{"reset", {"e4 e5", "reset"}, {START}},
        Dialogue{"moves", {"m"}, {"#moves = 20\n", "a2a3 ", "e2e4 "}},
        Dialogue{"moves that can be played",
                 {"fen 4k3/8/8/8/8/8/5r2/4K2R w K -", "moves"},
                 {"#moves = 11\n"}},
        Dialogue{"evaluation", {"eval"}, {"centipawns ", "for side to move "}},
        Dialogue{"moves in check",
                 {"fen 4k3/8/8/8/8/8/4r3/4K3 w - -", "moves"},
                 {"#moves = 3\n", "e1xe2 "}},
        Dialogue{"divide",
                 {"divide"},
                 {"----divide---\n", "e2e4              1\n", "-------------------\n",
                  "total            20\n"}},
        Dialogue{"divide 2", {"divide 2"}, {"total           400\n"}},
        Dialogue{"divide too deep", {"divide 5000"}, {"illegal arg: 5000\n"}},
        Dialogue{"perft of nonsense", {"perft x"}, {"illegal arg: x\n"}},
        Dialogue{
            "perft from a check", {"e4 f5 Qh5", "perft 1"}, {"perft 1\n", "perft 1=         1\n"}},
        Dialogue{"fixed time",
                 {"mt 5"},
                 {"millis=5000\n  easy=5000\n  next=5000\n  hi  =5000\n  lo  =5000\n"}},
        // 300000 * 1.5 / 41 + 2000 = 12975 milliseconds, and 4, 40, 250 and 400 per cent of it.
        Dialogue{"time control",
                 {"mt 300 40 2"},
                 {"millis=12975\n  easy=519\n  next=5190\n  hi  =32437\n  lo  =51900\n"}},
        Dialogue{"time control shown", {"mt 7", "maxtime"}, {"millis=7000\n"}},
        Dialogue{"time nonsense", {"mt soon"}, {"illegal arg: soon\n"}},
        Dialogue{"negative time", {"mt -5"}, {"illegal arg: -5\n"}},
        Dialogue{"depth nonsense", {"md deep"}, {"illegal arg: deep\n"}},
        Dialogue{"options", {"set"}, {"async  =0\nbook   =1\ncleartt=1\nthreads="}},
        Dialogue{"options set",
                 {"set async 1", "set book 0", "set cleartt 0", "set threads 3", "set"},
                 {"async  =1\nbook   =0\ncleartt=0\nthreads=3\n"}},
        Dialogue{"unknown option", {"set colour 1"}, {"set: unknown parameter: colour\n"}},
        Dialogue{"search", {"md 2", "g"}, {"eval=", "[1/", "nodes  :", "smp    :"}},
        Dialogue{"search with the old table", {"md 1", "g tt"}, {"tt not cleared\n"}},
        Dialogue{"search of a mate", {"f3 e5 g4 Qh4", "g"}, {"nodes  :"}}),
    [](const auto& test) {
      std::string name = test.param.name;
      std::replace_if(
          name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
      return name;
    });

TEST(Console, CountsTreesWithTheirSpeed) {
  Session session("machine.mhz=3000\n");
  session.ask("");
  const Lines lines = session.ask("perft");
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], "perft 2");
  EXPECT_EQ(lines[1], "perft 1=        20");
  EXPECT_EQ(lines[3], "perft 2=       400");
  EXPECT_TRUE(std::regex_match(lines[4], std::regex(" {22}       400 ops in \\d\\.\\d{3} seconds  "
                                                    "ops/ms= *\\d+,  ticks/op= *\\d+")))
      << lines[4];
}

TEST(Console, HelpsInFixedWords) {
  Session session;
  session.ask("");
  const std::string ruler(56, '-');
  EXPECT_EQ(joined(session.ask("help")),
            "help\n" + ruler +
                "\n"
                "[p]<sq>         move piece p to square sq\n"
                "g(o)            search\n"
                "reset           setup initial position\n"
                "fen <fen>       setup board according to <fen>\n"
                "m(ax)t(ime)     set max search time (seconds)\n"
                "m(ax)d(epth)    set max search depth\n"
                "m(oves)         show all legal moves\n"
                "\n"
                "book            show book contents\n"
                "buildbook ...   create opening book from PGN file, see readme\n"
                "mergebook ...   create opening book from PGN file, see readme\n"
                "divide [n]      count legal positions per move\n"
                "perft  [n]      count legal moves to depth [n]\n"
                "set             display/alter options\n"
                "\n"
                "uci             enter uci mode\n"
                "\n"
                "q(uit)          exit\n" +
                ruler + "\n\n");
}

TEST(Console, EndsAtOnceWithStatusZero) {
  // Each ends the program, in idleness and while a search runs that would go on for ever.
  for (int round = 0; round < 2; ++round) {
    for (const char* last : {"q\n", "quit\n", ""}) {
      for (const char* before : {"", "go infinite\n", "set async 1\nmt 1000\ng\n"}) {
        Session session;
        session.write(before);
        session.write(last);
        session.process().closeInput();
        EXPECT_EQ(session.exitStatus(), 0) << before << last;
      }
    }
  }
}

TEST(Console, SurvivesRubbish) {
  static constexpr const char* WORDS[] = {"go",        "position",
                                          "fen",       "startpos",
                                          "moves",     "e2e4",
                                          "setoption", "name",
                                          "Hash",      "value",
                                          "-1",        "99999999999999999999",
                                          "infinite",  "ponder",
                                          "stop",      "ponderhit",
                                          "depth",     "3",
                                          "nodes",     "0",
                                          "movetime",  "1",
                                          "mt",        "md",
                                          "set",       "threads",
                                          "x",         "8/8/8/8/8/8/8/K6k",
                                          "k/K/",      "K/k/QQQQQQQQ",
                                          "w",         "-",
                                          "undo",      "new",
                                          "usermove",  "hard",
                                          "easy",      "remove",
                                          "level",     "0:",
                                          "setboard",  "analyze",
                                          "exit",      "force",
                                          "?",         "post",
                                          "time",      "ping",
                                          "result",    "pause",
                                          "resume",    "st",
                                          "sd",        "O-O",
                                          "e8=Q",      "m",
                                          "fen",       "wtime"};
  Session session("search.nthreads=1\n");
  std::mt19937 random(4711);
  std::string text = "mt 1\n";
  for (int i = 0; i < 4000; ++i) {
    const unsigned words = random() % 6;
    for (unsigned word = 0; word <= words; ++word) {
      if (random() % 12 == 0) {
        for (unsigned byte = random() % 9; byte > 0; --byte) {
          const char c = static_cast<char>(random());
          text += c == '\n' ? '\r' : c;
        }
      } else {
        text += WORDS[random() % std::size(WORDS)];
      }
      text += random() % 9 == 0 ? "\t" : " ";
    }
    text += random() % 5 == 0 ? "\r\n" : "\n";
  }
  text += std::string(1 << 20, 'e') + "\nforce\nstop\nposition startpos\nping 5\n";
  std::thread writer([&] { session.write(text); });
  session.linesUpTo("pong 5");
  writer.join();
  EXPECT_TRUE(contains(session.ask("perft 3"), "8902"));
  session.write("go infin");  // half a command at the end of the input
  session.process().closeInput();
  EXPECT_EQ(session.exitStatus(), 0);
}

}  // namespace
}  // namespace ombrin
