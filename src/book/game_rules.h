// Whether a game is played by the rules that this program knows.
#pragma once

#include <string_view>

#include "board/board.h"
#include "pgn/pgn_game.h"

namespace ombrin {

// By its tag Variant: some programs name the usual rules there, too.
bool hasUsualRules(const PgnGame& game);

// Does the text, from which the board has just been set up, give castling rights that belong to
// another variant? Rights that the pieces do not support at all are only carelessness.
bool hasOtherCastling(std::string_view fen, const Board& board);

}  // namespace ombrin
