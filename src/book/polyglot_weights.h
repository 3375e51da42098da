#pragma once

#include "book/book_table.h"
#include "book/move_weights.h"
#include "book/play_settings.h"
#include "book/progress.h"

namespace ombrin {

// Of a sorted table whose moves are filed as a Polyglot book's: turns the games of every move into
// the weight with which the settings would have it played, the largest of a position being 65535,
// and brings the moves of a position into the order of their weights. A move that would not be
// played becomes empty.
void weighPositions(BookTable& table, const PlaySettings& settings, KnownOfMoves known,
                    Progress& progress);

}  // namespace ombrin
