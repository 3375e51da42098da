// What a move is worth when the value of the position behind it is known but for en passant.
#pragma once

#include <optional>

#include "moves.h"
#include "table_set.h"

namespace bitbases {

// The best that capturing the pawn in slot `doubleStepped` of a position just reached by its double
// step brings the capturer; nothing when there is no such capture. The smaller table must be held.
std::optional<Value> enPassantValue(const TableSet& tables, const Position& position,
                                    int doubleStepped);

// The value of that position for its side to move: `quiet` is its value without the capture,
// `capture` is enPassantValue().
Value withEnPassant(const Position& position, Value quiet, std::optional<Value> capture);

}  // namespace bitbases
