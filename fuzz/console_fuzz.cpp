// A session of a person, who may also enter a protocol.
#include "session.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::string_view WORDS[] = {
      "\ng",
      "\ng nobook",
      "\ng tt",
      "\nreset",
      "\nfen",
      "\nmt",
      "\nmd",
      "\nmoves",
      "\nbook",
      "\nbuildbook games.pgn",
      "\nbuildbook",
      "\nmergebook",
      "\nmergebook book.obk book.obk merged.obk",
      "\nlogbook",
      "\nloadbook",
      "\ndivide",
      "\nperft",
      "\nset",
      "\nset async",
      "\nset book",
      "\nset cleartt",
      "\nset threads",
      "\nhelp",
      "\ngo depth 2",
      "\nstop",
      "\nuci",
      "\nxboard",
      "\n!\n",
      "\n1. e4 e5 2. Nf3",
      "\nusermove",
      "\nundo",
      "\nq",
  };
  silence();
  playSession("", SessionText(WORDS), textOf(data, size));
  return 0;
}
