// Forsyth-Edwards Notation.
#pragma once

#include <string>
#include <string_view>

#include "board/board.h"

namespace ombrin {

inline constexpr std::string_view START_FEN = "rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR w KQkq - -";

// Converts to true when the position was accepted.
struct FenResult {
  std::string error;  // why not, in a line without its end; any byte of the FEN may be in it

  explicit operator bool() const { return error.empty(); }
};

// Sets the board up. Lenient in what the engine can do without (missing trailing fields, empty
// ranks written as nothing, castling rights that the pieces do not support), which it logs; strict
// in what would break it, positions that no game can reach in one of the ways that matter here.
// After a refusal the board must not be played on or searched.
FenResult setFen(Board& board, std::string_view text);

// The position's FEN. Its two counts are the half-move clock and the plies made since the set-up.
std::string writeFen(const Board& board);

}  // namespace ombrin
