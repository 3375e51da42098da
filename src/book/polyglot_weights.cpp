#include "book/polyglot_weights.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "book/polyglot_format.h"
#include "book/table_positions.h"

namespace ombrin {

void weighPositions(BookTable& table, const PlaySettings& settings, KnownOfMoves known,
                    Progress& progress) {
  std::vector<PickRecord> records;
  forEachPosition(table.entries(), progress, [&](std::span<BookEntry> moves) {
    records.assign(moves.size(), PickRecord());
    weighMoves(moves, records, moves.front().isBlackMove() ? BLACK : WHITE, settings, known);
    const double largest = std::ranges::max(records, {}, &PickRecord::weight).weight;
    for (std::size_t i = 0; i < moves.size(); ++i) {
      const double share = largest > 0 ? records[i].weight / largest : 0;
      moves[i].wins = moves[i].losses = 0;
      // However small, a weight above 0 stays above 0.
      moves[i].draws =
          static_cast<std::uint32_t>(std::ceil(share * polyglot::LARGEST_WEIGHT - 1e-6));
    }
    std::ranges::stable_sort(moves, isBefore);
  });
}

}  // namespace ombrin
