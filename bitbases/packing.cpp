#include "packing.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

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
    Filler(draft).fill();
    writer.set(number, packed(draft.values));
  });
}

}  // namespace bitbases
