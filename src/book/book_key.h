// The keys under which a book files its positions.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace ombrin {

// The board's key, with bit 0 flipped when Black is to move.
std::uint64_t bookKey(const Board& board);

// The key of an older kind of book, which follows the castling rights by the moves that the game
// has seen from the six squares of kings and rooks. Right as long as the board remembers the whole
// game.
std::uint64_t legacyKey(const Board& board);

// The two keys of the start position.
std::uint64_t startBookKey();
std::uint64_t startLegacyKey();

}  // namespace ombrin
