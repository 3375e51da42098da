#include "packing.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

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

// Gives the values that do not matter to repetitions: the longest that begin at each byte, of what
// stands some words before, because that is what compresses.
class Filler {
 public:
  explicit Filler(Draft& draft)
      : values_(reinterpret_cast<std::uint8_t*>(&draft.values)),
        matters_(reinterpret_cast<const std::uint8_t*>(&draft.matters)) {}

  void fill() {
    for (std::size_t i = 0; i < sizeof(Squares); ++i) values_[i] &= matters_[i];
    for (std::size_t i = sizeof(Squares); i < SIZE;) {
      const auto [distance, length] = longestRepetition(i);
      if (length >= SHORTEST) {
        for (std::size_t n = 0; n < length; ++n, ++i) values_[i] = values_[i - distance];
      } else {
        const int above = values_[i - sizeof(Squares)] & ~matters_[i];
        values_[i] = static_cast<std::uint8_t>((values_[i] & matters_[i]) | above);
        ++i;
      }
    }
  }

 private:
  static constexpr std::size_t SIZE = sizeof(Block);
  static constexpr std::size_t SHORTEST = 3;  // that is worth it

  struct Repetition {
    std::size_t distance;
    std::size_t length;
  };

  // Which is of a man on another square of the same rank or of one of the next ranks, and then of
  // another man.
  Repetition longestRepetition(std::size_t begin) const {
    Repetition longest{0, 0};
    const auto attempt = [&](std::size_t words) {
      const std::size_t distance = words * sizeof(Squares);
      if (distance > begin) return;
      const std::size_t length = repetition(begin, distance);
      if (length > longest.length) longest = {distance, length};
    };
    for (std::size_t words = 1; words <= 64; ++words) attempt(words);
    for (std::size_t words = 128; words <= Block::WORDS; words += 64) attempt(words);
    return longest;
  }

  // How many bytes can be copies of those at a distance before them.
  std::size_t repetition(std::size_t begin, std::size_t distance) const {
    std::size_t length = 0;
    const std::uint8_t* const source = values_ + begin - distance;
    // What is copied may be copied on.
    for (; length + sizeof(Squares) <= std::min(distance, SIZE - begin);
         length += sizeof(Squares)) {
      const Squares differing = (wordAt(source + length) ^ wordAt(values_ + begin + length)) &
                                wordAt(matters_ + begin + length);
      if (differing != 0) {
        return length + static_cast<std::size_t>(std::countr_zero(differing)) / 8;
      }
    }
    while (begin + length < SIZE) {
      const int differing =
          (source[length % distance] ^ values_[begin + length]) & matters_[begin + length];
      if (differing != 0) break;
      ++length;
    }
    return length;
  }

  static Squares wordAt(const std::uint8_t* bytes) {
    Squares word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }

  std::uint8_t* values_;
  const std::uint8_t* matters_;
};

// Makes the blocks of one table.
class Packer {
 public:
  Packer(const FullTable& table, const TableSource& source)
      : table_(table), leaving_(table.material, source, nullptr) {}

  std::vector<std::byte> block(const TableWriter& writer, std::uint32_t number) const {
    const std::uint32_t half = writer.blocks() / 2;
    const Color side = number < half ? 0 : 1;
    const std::uint32_t begin = (number - (side == 0 ? 0 : half)) * Block::WORDS;
    const std::uint32_t end = std::min(begin + Block::WORDS, writer.grid().words());
    Draft draft;
    for (std::uint32_t word = begin; word < end; ++word) {
      const Position frame = writer.grid().frame(word);
      Squares legal = legalSet(frame, side);
      if (table_.grid.isOnDiagonal(frame)) legal &= ~squaresAboveDiagonal();
      if (legal == 0) continue;
      const Leaving captures = leaving_.captures(frame, side);
      const ValueSets values = table_.at(frame, side);
      draft.values.won[word - begin] = values.won;
      draft.values.lost[word - begin] = values.lost;
      draft.matters.won[word - begin] = legal & ~captures.won;
      draft.matters.lost[word - begin] = legal & ~captures.saved & ~values.won;
    }
    Filler(draft).fill();
    return packed(draft.values);
  }

 private:
  const FullTable& table_;
  LeavingMoves leaving_;
};

// How large some of the blocks are in one order.
std::size_t sampleSize(const Packer& packer, const TableWriter& writer, int threads) {
  constexpr std::uint32_t FEWEST = 12;
  constexpr std::uint32_t ONE_OF = 64;
  const std::uint32_t count = std::min(writer.blocks(), std::max(writer.blocks() / ONE_OF, FEWEST));
  std::atomic<std::size_t> size = 0;
  forRanges(count, 1, threads, [&](std::uint64_t n, std::uint64_t) {
    const std::uint64_t number = n * writer.blocks() / count;
    size += packer.block(writer, static_cast<std::uint32_t>(number)).size();
  });
  return size;
}

}  // namespace

TableWriter pack(const FullTable& table, const TableSource& source, int longestChain, int threads) {
  const Packer packer(table, source);
  TableWriter best(table.material, 0, longestChain);
  std::size_t smallest = sampleSize(packer, best, threads);
  for (int order = 1; order < table.grid.orders(); ++order) {
    TableWriter writer(table.material, order, longestChain);
    const std::size_t size = sampleSize(packer, writer, threads);
    if (size >= smallest) continue;
    smallest = size;
    best = std::move(writer);
  }
  forRanges(best.blocks(), 1, threads, [&](std::uint64_t n, std::uint64_t) {
    const auto number = static_cast<std::uint32_t>(n);
    best.set(number, packer.block(best, number));
  });
  return best;
}

}  // namespace bitbases
