#include "protocol/refusal.h"

#include <cstdio>

namespace ombrin {

bool reportRefusal(const FenResult& result) {
  if (result) return true;
  const std::string line = result.error + '\n';
  std::fwrite(line.data(), 1, line.size(), stdout);
  return false;
}

}  // namespace ombrin
