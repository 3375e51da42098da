#include "packing.h"

#include <algorithm>
#include <span>

#include "frame_sets.h"
#include "leaving_moves.h"
#include "parallel.h"

namespace bitbases {

namespace {

// A block, and which of its values matter.
struct Draft {
  Block values;
  Block matters;
};

void fill(std::span<Squares> values, std::span<const Squares> matters) {
  Squares last = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = (values[i] & matters[i]) | (last & ~matters[i]);
    last = values[i];
  }
}

}  // namespace

void pack(const FullTable& table, const TableSource& source, int threads, TableWriter& writer) {
  const LeavingMoves leaving(table.material, source, nullptr);
  const std::uint32_t half = writer.blocks() / 2;
  forRanges(writer.blocks(), 1, threads, [&](std::uint64_t n, std::uint64_t) {
    const auto number = static_cast<std::uint32_t>(n);
    const Color side = number < half ? 0 : 1;
    const std::uint32_t begin = (number - (side == 0 ? 0 : half)) * Block::WORDS;
    const std::uint32_t end = std::min(begin + Block::WORDS, table.grid.words());
    Draft draft;
    for (std::uint32_t word = begin; word < end; ++word) {
      const Position frame = table.grid.frame(word);
      Squares legal = legalSet(frame, side);
      if (table.grid.isOnDiagonal(frame)) legal &= ~squaresAboveDiagonal();
      if (legal == 0) continue;
      const Leaving captures = leaving.captures(frame, side);
      const Squares won = table.won[side][word];
      draft.values.won[word - begin] = won;
      draft.values.lost[word - begin] = table.lost[side][word];
      draft.matters.won[word - begin] = legal & ~captures.won;
      draft.matters.lost[word - begin] = legal & ~captures.saved & ~won;
    }
    fill(draft.values.won, draft.matters.won);
    fill(draft.values.lost, draft.matters.lost);
    writer.set(number, packed(draft.values));
  });
}

}  // namespace bitbases
