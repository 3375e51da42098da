#pragma once

#include "util/log.h"

namespace ombrin {

inline constexpr LogChannel UCI_LOG{"uci"};

}  // namespace ombrin
