#pragma once

namespace ombrin {

// The number of processors that the operating system lets this process use; 0 when it does not
// say. Any thread.
int processorCount();

}  // namespace ombrin
