// The lines of the WinBoard protocol that report on a search, as texts.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "board/move.h"
#include "board/score.h"

namespace ombrin {

// Depth, score, centiseconds, nodes and the expected line, without a line end. While pondering, the
// line starts behind the ponder move, so that move is put before it. The time is in milliseconds.
std::string winboardThinkingLine(int depth, Score score, std::uint64_t time, std::uint64_t nodes,
                                 Move ponderMove, std::span<const Move> line);

}  // namespace ombrin
