#pragma once

namespace ombrin {

// Takes the calling thread one step below its priority, the smallest that the system has. A system
// that refuses leaves it where it is.
void stepBelowNormal();

}  // namespace ombrin
