#include "table_set.h"

#include <filesystem>
#include <new>

#include "moves.h"

namespace bitbases {

namespace {

Value valueIn(Squares won, Squares lost, Square square) {
  return (won >> square & 1) != 0 ? WIN : (lost >> square & 1) != 0 ? LOSS : DRAW;
}

}  // namespace

void TableSet::setCache(std::size_t bytes) {
  const std::scoped_lock lock(adding_);
  while (!ownedCache_) {
    try {
      ownedCache_ = std::make_unique<BlockCache>(bytes);
    } catch (const std::bad_alloc&) {
      bytes /= 2;
    }
  }
  cache_.store(ownedCache_.get(), std::memory_order_release);
}

bool TableSet::add(const std::string& directory, const Material& material) {
  const std::scoped_lock lock(adding_);
  if (holds(material)) return true;
  auto file = TableFile::open(directory, material);
  if (!file) {
    const std::string path = tablePath(directory, material);
    std::error_code error;
    if (std::filesystem::exists(path, error)) report_(path);
    return false;
  }
  all_.push_back(std::make_unique<Table>(std::move(file), static_cast<std::uint32_t>(all_.size())));
  tables_[static_cast<std::size_t>(material.number())].store(all_.back().get(),
                                                             std::memory_order_release);
  return true;
}

bool TableSet::holds(const Material& material) const {
  const Table* const table =
      tables_[static_cast<std::size_t>(material.number())].load(std::memory_order_acquire);
  return table != nullptr && !table->isDamaged.load(std::memory_order_relaxed);
}

std::optional<Value> TableSet::value(const Position& position) const {
  if (position.count == 0) return DRAW;
  // A capture that wins, or saves, need not be in the table.
  std::optional<Value> best;
  const MoveList captures = legalCaptures(position);
  bool isKnown = true;
  for (const Move& move : captures.moves()) {
    const std::optional<Value> theirs = value(after(position, move));
    if (!theirs) {
      isKnown = false;
      continue;
    }
    if (*theirs == LOSS) return WIN;
    best = better(best.value_or(LOSS), negated(*theirs));
  }
  if (!isKnown) return std::nullopt;

  Position sorted = position;
  sortMen(sorted);
  const auto tableOf = [this](const Position& men) {
    const int number = sideNumber(men, 0) * Material::SIDES + sideNumber(men, 1);
    return tables_[static_cast<std::size_t>(number)].load(std::memory_order_acquire);
  };
  Table* table = tableOf(sorted);
  if (table == nullptr) {
    sorted = colorsExchanged(sorted);
    sortMen(sorted);
    table = tableOf(sorted);
    if (table == nullptr) return std::nullopt;
  }
  const std::optional<Value> kept = keptValue(*table, sorted);
  return kept && best == DRAW && *kept == LOSS ? DRAW : kept;
}

std::optional<Value> TableSet::keptValue(Table& table, const Position& sorted) const {
  if (table.isDamaged.load(std::memory_order_relaxed)) return std::nullopt;
  const TableFile& file = *table.file;
  const Grid::Place place = file.grid().findPosition(sorted);
  const Square king = place.symmetry(sorted.king[1]);
  const std::uint32_t number = file.blockOf(sorted.side, place.word);
  const std::uint32_t word = place.word % Block::WORDS;
  const std::uint64_t key = std::uint64_t{table.number} << 32 | number;
  BlockCache* const cache = cache_.load(std::memory_order_acquire);
  if (cache != nullptr) {
    if (const auto words = cache->find(key, word)) return valueIn(words->won, words->lost, king);
  }
  Block block;
  if (!file.read(number, block)) {
    if (!table.isDamaged.exchange(true)) report_(file.path());
    return std::nullopt;
  }
  if (cache != nullptr) cache->insert(key, block);
  return valueIn(block.won[word], block.lost[word], king);
}

}  // namespace bitbases
