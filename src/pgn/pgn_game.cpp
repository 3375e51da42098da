#include "pgn/pgn_game.h"

namespace ombrin {

void PgnGame::clear() {
  for (std::string* text :
       {&fen, &white, &black, &date, &event, &site, &round, &eco, &variant, &warning}) {
    text->clear();
  }
  whiteElo = 0;
  blackElo = 0;
  result = NO_RESULT;
  moves.clear();
}

}  // namespace ombrin
