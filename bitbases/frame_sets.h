// The rules of the game for all positions of one frame at once: sets are of the squares of the
// black king, and a frame is a position whose black king and side to move are left open.
#pragma once

#include "moves.h"
#include "position.h"
#include "symmetry.h"

namespace bitbases {

// All men but the black king.
Squares occupiedInFrame(const Position& frame);
// Where the black king is in the way of a slider's move or attack between two squares.
Squares between(Square from, Square to);

// The positions with their men on squares of their own and kings apart in which the side is in
// check.
Squares checkedSet(const Position& frame, Color side);
// The positions that may arise with that side to move.
Squares legalSet(const Position& frame, Color side);
// The positions, of those given, legal ones, in which the side to move has a move by a piece or the
// king to an empty square.
Squares movableSet(const Position& frame, Color side, Squares wanted);

}  // namespace bitbases
