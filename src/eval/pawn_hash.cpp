#include "eval/pawn_hash.h"

#include <cstdlib>

#include "util/print.h"

namespace ombrin {

void PawnHash::Free::operator()(void* block) const {
  std::free(block);  // NOLINT(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
}

void PawnHash::resize(std::size_t entries) {
  constexpr std::size_t ALIGNMENT = 256;
  entries_ = entries < 2 ? 1 : std::bit_floor(entries);
  const std::size_t items = entries_ + ALIGNMENT / sizeof(PawnEntry);
  block_.reset();  // before the new block is taken: both might not fit
  block_.reset(std::calloc(items, sizeof(PawnEntry)));  // NOLINT(cppcoreguidelines-no-malloc)
  if (block_ == nullptr) {
    print(stderr, "failed to allocate %zu bytes for pawnhash\n", items * sizeof(PawnEntry));
    std::abort();
  }
  void* start = block_.get();
  std::size_t room = items * sizeof(PawnEntry);
  table_ =
      static_cast<PawnEntry*>(std::align(ALIGNMENT, entries_ * sizeof(PawnEntry), start, room));
  // A position without pawns has the key 0, which must not match the fresh entry.
  table_[0].key = 1;
  hits = 0;
  misses = 0;
}

}  // namespace ombrin
