// make_games <games> [seed]: writes random legal games as PGN to standard output, for measuring how
// fast books are built.
#include <cstdio>

#include "support/random_games.h"
#include "util/print.h"
#include "util/scan.h"

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    ombrin::print(stderr, "Usage: make_games <games> [seed]\n");
    return 1;
  }
  ombrin::RandomGames games(argc == 3 ? static_cast<unsigned>(ombrin::toInt(argv[2])) : 1);
  for (int left = ombrin::toInt(argv[1]); left > 0; --left) {
    const std::string text = games.next();
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) return 1;
  }
  return 0;
}
