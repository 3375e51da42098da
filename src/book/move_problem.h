#pragma once

#include <string>
#include <string_view>

#include "board/board.h"

namespace ombrin {

// Why parseMove() finds no move of this position in the text: for whoever has to mend it.
std::string moveProblem(Board& board, std::string_view text);

// Is there a character in the text that belongs to no move? parseMove() would report it.
bool hasForeignCharacter(std::string_view text);

}  // namespace ombrin
