// A session under the Universal Chess Interface.
#include "session.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::string_view WORDS[] = {
      "\nposition startpos",
      "\nposition startpos moves",
      "\nposition fen",
      "moves",
      "\ngo",
      "\ngo depth 3",
      "\ngo movetime 1",
      "\ngo infinite",
      "\ngo ponder wtime 100 btime 100",
      "\nstop",
      "\nponderhit",
      "\nisready",
      "\nucinewgame",
      "\nsetoption name Hash value",
      "\nsetoption name Threads value",
      "\nsetoption name OwnBook value true",
      "\nsetoption name OwnBook value false",
      "\nsetoption name Ponder value",
      "\nsetoption name Clear Hash",
      "\nsetoption name UCI_Opponent value GM 2800 human Somebody",
      "wtime",
      "btime",
      "winc",
      "binc",
      "movestogo",
      "depth",
      "nodes",
      "movetime",
      "infinite",
      "ponder",
      "true",
      "\nuci",
      "\n!\n",
  };
  silence();
  playSession("uci\n", SessionText(WORDS), textOf(data, size));
  return 0;
}
