#pragma once

#include "position.h"

namespace bitbases {

// How far a won position has come on the way to the mate, from 3500 to 8000: a pawn unit of
// material counts 100, a pawn's step 30. The winner may be either side.
int progress(const Position& position, Color winner);

}  // namespace bitbases
