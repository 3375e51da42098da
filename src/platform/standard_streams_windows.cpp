#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/standard_streams.h"

namespace ombrin {

// Reading in text mode would also wait for the byte behind a carriage return.
void passBytesUnchanged() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

bool isTerminal(std::FILE* stream) {
  return _isatty(_fileno(stream)) != 0;
}

}  // namespace ombrin
