#pragma once

#include <cstdio>

namespace ombrin {

// Lets standard input and output pass every byte as it is, on systems that would otherwise
// translate line ends and take control-Z for the end of the input. Before they are first used.
void passBytesUnchanged();

// Does somebody see what is written there at once? Any thread.
bool isTerminal(std::FILE* stream);

}  // namespace ombrin
