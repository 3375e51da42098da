#include <unistd.h>

#include "platform/standard_streams.h"

namespace ombrin {

void passBytesUnchanged() {}

bool isTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) != 0;
}

}  // namespace ombrin
