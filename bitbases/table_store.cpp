#include "table_store.h"

#include <atomic>
#include <stdexcept>

#include "frame_sets.h"
#include "leaving_moves.h"
#include "parallel.h"
#include "table_file.h"

namespace bitbases {

namespace {

constexpr std::uint64_t GRAIN = 4096;  // words

// With the white king on the diagonal, half of each word is kept in that of the reflection.
void fillAboveDiagonal(FullTable& table, Color side) {
  const Squares above = squaresAboveDiagonal();
  for (std::uint32_t word = 0; word < table.grid.words(); ++word) {
    const Position frame = table.grid.frame(word);
    if (!table.grid.isOnDiagonal(frame)) continue;
    const std::uint32_t other = table.grid.reflected(frame);
    for (std::vector<Squares>* const words : {&table.won[side], &table.lost[side]}) {
      (*words)[word] |= transposed((*words)[other]) & above;
    }
  }
}

}  // namespace

TableStore::TableStore(std::string directory, int threads)
    : directory_(std::move(directory)), threads_(threads) {}

TableSource TableStore::source() {
  return [this](const Material& material, Color side) {
    auto found = table(material, side);
    if (!found) throw std::runtime_error(material.name() + " cannot be read");
    return found;
  };
}

std::shared_ptr<const FullTable> TableStore::table(const Material& material, Color side) {
  const std::pair key(material.number(), side);
  if (const auto kept = kept_.find(key); kept != kept_.end()) return kept->second;
  std::shared_ptr<const FullTable> table =
      material.isCanonical() ? load(material, side) : exchanged(material, side);
  if (table && material.men() < 5) kept_.emplace(key, table);
  return table;
}

std::shared_ptr<FullTable> TableStore::load(const Material& material, Color side) {
  const auto file = TableFile::open(directory_, material);
  if (!file) return nullptr;
  auto table = std::make_shared<FullTable>(material);
  table->makeRoom(side);
  const LeavingMoves leaving(material, source(), nullptr);
  std::atomic<bool> isWhole = true;
  const std::uint32_t words = table->grid.words();
  forRanges(words, Block::WORDS, threads_, [&](std::uint64_t begin, std::uint64_t end) {
    Block block;
    if (!file->read(file->blockOf(side, static_cast<std::uint32_t>(begin)), block)) isWhole = false;
    for (auto kept = static_cast<std::uint32_t>(begin); kept < end; ++kept) {
      const Position frame = file->grid().frame(kept);
      const std::uint32_t word = table->grid.find(frame).word;
      Squares legal = legalSet(frame, side);
      if (table->grid.isOnDiagonal(frame)) legal &= ~squaresAboveDiagonal();
      if (legal == 0) continue;
      const Leaving captures = leaving.captures(frame, side);
      const Squares won = legal & (block.won[kept - begin] | captures.won);
      table->won[side][word] = won;
      table->lost[side][word] = legal & block.lost[kept - begin] & ~won & ~captures.saved;
    }
  });
  if (!isWhole) return nullptr;
  if (!table->grid.hasPawns()) fillAboveDiagonal(*table, side);
  return table;
}

// The table of a material that has none of its own, from that with the colours exchanged.
std::shared_ptr<FullTable> TableStore::exchanged(const Material& material, Color side) {
  const auto other = this->table(material.canonical(), 1 - side);
  if (!other) return nullptr;
  auto table = std::make_shared<FullTable>(material);
  table->makeRoom(side);
  forRanges(table->grid.words(), GRAIN, threads_, [&](std::uint64_t begin, std::uint64_t end) {
    for (auto word = static_cast<std::uint32_t>(begin); word < end; ++word) {
      Position position = table->grid.frame(word);
      Squares legal = legalSet(position, side);
      while (legal != 0) {
        position.king[1] = popSquare(legal);
        Position twin = colorsExchanged(position);
        sortMen(twin);
        const ValueSets values = other->at(twin, 1 - side);
        const Squares king = bitOf(twin.king[1]);
        if ((values.won & king) != 0) table->won[side][word] |= bitOf(position.king[1]);
        if ((values.lost & king) != 0) table->lost[side][word] |= bitOf(position.king[1]);
      }
    }
  });
  return table;
}

}  // namespace bitbases
