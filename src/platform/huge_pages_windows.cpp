#include "platform/huge_pages.h"

namespace ombrin {

// Here such pages need a privilege that an engine does not have.
void preferHugePages(void* /*start*/, std::size_t /*bytes*/) {}

}  // namespace ombrin
