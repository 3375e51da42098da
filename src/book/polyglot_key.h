#pragma once

#include <cstdint>

#include "board/board.h"

namespace ombrin {

// The key under which a Polyglot book files the position. Made from scratch.
std::uint64_t polyglotKey(const Board& board);

}  // namespace ombrin
