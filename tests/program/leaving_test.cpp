// How the program leaves when nobody says "quit".
#include <signal.h>

#include "program/session.h"

namespace ombrin {
namespace {

struct Ending {
  const char* name;
  int signal;  // 0: the reader of the output goes away
  const char* logged;
  const char* commands;  // they leave a search running that has no end of its own
};
void PrintTo(const Ending& ending, std::ostream* stream) {
  *stream << ending.name;
}

class EndRequest : public testing::TestWithParam<Ending> {};

TEST_P(EndRequest, EndsASearchAndCompletesTheLog) {
  const Ending& ending = GetParam();
  Session session("uci.logdir=logs\nwinboard.logdir=logs\nsearch.nthreads=2\n");
  session.write(ending.commands);
  session.waitFor(ending.commands[0] == 'u' ? "readyok" : "pong");
  if (ending.signal != 0) {
    session.process().kill(ending.signal);
  } else {
    session.process().closeOutput();
  }
  EXPECT_EQ(session.exitStatus(), 0);
  const std::string log = session.fileText("logs/ombrin-0000.log");
  // Other threads may still have had a line to write.
  EXPECT_NE(log.find(std::string("leaving: ") + ending.logged + "\n"), log.npos) << log;
}

constexpr const char* UCI = "uci\nposition startpos\ngo infinite\nisready\n";
constexpr const char* XBOARD = "xboard\npost\nanalyze\nping 1\n";

INSTANTIATE_TEST_SUITE_P(Table, EndRequest,
                         testing::Values(Ending{"UciTerminate", SIGTERM, "terminated", UCI},
                                         Ending{"UciInterrupt", SIGINT, "interrupted", UCI},
                                         Ending{"UciHangUp", SIGHUP, "hung up", UCI},
                                         Ending{"UciPipe", 0, "nobody reads the output", UCI},
                                         Ending{"XboardTerminate", SIGTERM, "terminated", XBOARD},
                                         Ending{"XboardPipe", 0, "nobody reads the output",
                                                XBOARD}),
                         [](const auto& test) { return test.param.name; });

// Whatever a clock says, a move comes; how much of the time it takes is the clock's own test.
TEST(Clocks, NeverKeepAMoveFromComing) {
  Session session("search.nthreads=1\nuci.timegap=3\n");
  session.ask("uci");
  for (const char* limits :
       {"wtime 50 btime 50", "wtime 1 btime 1", "wtime 0 btime 0", "wtime 1 winc 100 binc 100",
        "wtime 0 btime 0 winc 20", "wtime 100 btime 100 movestogo 1", "wtime 2900 movestogo 1",
        "movetime 0", "movetime 1", "nodes 1", "wtime 1 btime 1 movestogo 1000000"}) {
    for (const char* fen : {"k7/8/8/8/8/8/r7/7K w - - 0 1",  // a single move
                            "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"}) {
      session.send(std::string("position fen ") + fen);
      session.send(std::string("go ") + limits);
      EXPECT_NE(session.waitFor("bestmove ").substr(0, 13), "bestmove 0000") << limits << fen;
    }
  }
}

// Commands that overtake the start of the search that they are meant for.
TEST(Clocks, HearWhatFollowsTheStartAtOnce) {
  for (const char* threads : {"1", "2"}) {
    Session session("");
    session.ask("uci");
    session.ask(std::string("setoption name Threads value ") + threads);
    for (int round = 0; round < 200; ++round) {
      session.write(round % 2 == 0 ? "position startpos\ngo ponder wtime 100 btime 100\nponderhit\n"
                                   : "position startpos\ngo infinite\nstop\n");
      session.waitFor("bestmove ");
      ASSERT_FALSE(HasFailure()) << round;
    }
  }
}

}  // namespace
}  // namespace ombrin
