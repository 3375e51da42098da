#pragma once

#include "board/fen.h"

namespace ombrin {

// Says on standard output why a set-up was refused; nothing when it was not. True when it was not.
bool reportRefusal(const FenResult& result);

}  // namespace ombrin
