#pragma once

#include "board/material.h"

namespace ombrin {

// What the two sides' men are worth together beyond the sum of their values (the bishop pair, a
// rook against two minor pieces, pieces that gain or lose with the number of pawns), in centipawns,
// White minus Black.
int materialImbalance(Material white, Material black);

}  // namespace ombrin
