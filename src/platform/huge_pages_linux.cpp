#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "platform/huge_pages.h"

namespace ombrin {

void preferHugePages(void* start, std::size_t bytes) {
  // The system takes whole pages only.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto first = (reinterpret_cast<std::uintptr_t>(start) + page - 1) / page * page;
  const auto last = (reinterpret_cast<std::uintptr_t>(start) + bytes) / page * page;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the address has just been rounded
  if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

}  // namespace ombrin
