#include "layout.h"

#include <algorithm>

namespace bitbases {

namespace {

constexpr Square transpose(Square square) {
  return (square >> 3) | ((square & 7) << 3);
}
constexpr bool isAbove(Square square) {
  return rankOf(square) > fileOf(square);
}
constexpr bool isDiagonal(Square square) {
  return rankOf(square) == fileOf(square);
}

struct KingPair {
  std::uint8_t white;
  std::uint8_t black;
};

// The placements of two kings that are not adjacent, one of each class of reflections.
template <std::size_t COUNT>
struct KingPairs {
  std::array<KingPair, COUNT> pairs{};
  std::array<std::array<std::uint16_t, 64>, 64> numbers{};
};

template <std::size_t COUNT, bool PAWNS>
consteval KingPairs<COUNT> makeKingPairs() {
  KingPairs<COUNT> table;
  std::uint16_t next = 0;
  for (Square white = 0; white < 64; ++white) {
    if (fileOf(white) > 3) continue;
    if (!PAWNS && (rankOf(white) > 3 || isAbove(white))) continue;
    for (Square black = 0; black < 64; ++black) {
      if (distance(white, black) < 2) continue;
      if (!PAWNS && isDiagonal(white) && isAbove(black)) continue;
      table.pairs[next] = {static_cast<std::uint8_t>(white), static_cast<std::uint8_t>(black)};
      table.numbers[white][black] = next++;
    }
  }
  if (next != COUNT) throw "the number of king pairs is wrong";
  return table;
}
constexpr KingPairs<1806> KINGS_WITH_PAWNS = makeKingPairs<1806, true>();
constexpr KingPairs<462> KINGS_WITHOUT_PAWNS = makeKingPairs<462, false>();

constexpr std::uint32_t pairsBelow(std::uint32_t n) {
  return n * (n - 1) / 2;
}
constexpr std::uint32_t triplesBelow(std::uint32_t n) {
  return n * (n - 1) * (n - 2) / 6;
}
constexpr std::uint32_t placementsOf(int count, std::uint32_t squares) {
  return count == 1 ? squares : count == 2 ? pairsBelow(squares) : triplesBelow(squares);
}

struct Pair {
  std::uint8_t low;
  std::uint8_t high;
};
consteval std::array<Pair, pairsBelow(64)> makePairs() {
  std::array<Pair, pairsBelow(64)> pairs{};
  for (std::uint8_t high = 1; high < 64; ++high) {
    for (std::uint8_t low = 0; low < high; ++low) pairs[pairsBelow(high) + low] = {low, high};
  }
  return pairs;
}
constexpr std::array<Pair, pairsBelow(64)> PAIRS = makePairs();

std::uint32_t pairNumber(std::uint32_t a, std::uint32_t b) {
  return a < b ? pairsBelow(b) + a : pairsBelow(a) + b;
}

std::uint32_t tripleNumber(std::array<std::uint32_t, 3> squares) {
  std::ranges::sort(squares);
  return triplesBelow(squares[2]) + pairsBelow(squares[1]) + squares[0];
}

// The squares, from 0, of the placement with that number.
std::array<std::uint8_t, MAX_MEN> placedSquares(int count, std::uint32_t number) {
  if (count == 1) return {static_cast<std::uint8_t>(number)};
  if (count == 2) return {PAIRS[number].low, PAIRS[number].high};
  std::uint8_t high = 2;
  while (triplesBelow(high + 1U) <= number) ++high;
  const Pair rest = PAIRS[number - triplesBelow(high)];
  return {rest.low, rest.high, high};
}

}  // namespace

Layout::Layout(const Material& material)
    : hasPawns_(material.pattern().hasPawns()),
      kingPairs_(hasPawns_ ? KINGS_WITH_PAWNS.pairs.size() : KINGS_WITHOUT_PAWNS.pairs.size()),
      placements_(1),
      pattern_(material.pattern()) {
  for (int slot = 0; slot < pattern_.count; ++slot) {
    const Man& man = pattern_.slots[slot];
    const bool isNew = slot == 0 || pattern_.slots[slot - 1].type != man.type ||
                       pattern_.slots[slot - 1].color != man.color;
    if (isNew) {
      groups_[groupCount_++] = {static_cast<std::uint8_t>(slot), 0,
                                static_cast<std::uint8_t>(man.type == PAWN ? 8 : 0), 0};
    }
    ++groups_[groupCount_ - 1].count;
  }
  for (Group& group : std::span(groups_).first(static_cast<std::size_t>(groupCount_))) {
    group.size = placementsOf(group.count, 64U - 2U * group.lowest);
    placements_ *= group.size;
  }
}

std::uint32_t Layout::placement(const Position& position, Square mask, bool transposed) const {
  std::uint32_t number = 0;
  for (int g = 0; g < groupCount_; ++g) {
    const Group& group = groups_[g];
    const auto square = [&](int i) {
      const Square masked = position.slots[group.first + i].square ^ mask;
      return static_cast<std::uint32_t>(transposed ? transpose(masked) : masked) - group.lowest;
    };
    number *= group.size;
    number += group.count == 1   ? square(0)
              : group.count == 2 ? pairNumber(square(0), square(1))
                                 : tripleNumber({square(0), square(1), square(2)});
  }
  return number;
}

std::uint64_t Layout::index(const Position& position) const {
  Square white = position.king[0];
  Square black = position.king[1];
  const Square mask = (fileOf(white) > 3 ? 7 : 0) ^ (!hasPawns_ && rankOf(white) > 3 ? 56 : 0);
  white ^= mask;
  black ^= mask;
  std::uint64_t number = position.side != 0 ? kingPairs_ : 0;
  if (hasPawns_) {
    return (number + KINGS_WITH_PAWNS.numbers[white][black]) * placements_ +
           placement(position, mask, false);
  }
  const bool transposed = isAbove(white) || (isDiagonal(white) && isAbove(black));
  if (transposed) {
    white = transpose(white);
    black = transpose(black);
  }
  number = (number + KINGS_WITHOUT_PAWNS.numbers[white][black]) * placements_;
  const std::uint32_t one = placement(position, mask, transposed);
  if (!isDiagonal(white) || !isDiagonal(black)) return number + one;
  // Both reflections keep the kings in place: the lower number stands for both.
  return number + std::min(one, placement(position, mask, !transposed));
}

Position Layout::position(std::uint64_t index) const {
  Position position = pattern_;
  auto rest = static_cast<std::uint32_t>(index);
  std::uint32_t kings = rest / placements_;
  rest -= kings * placements_;
  if (kings >= kingPairs_) {
    position.side = 1;
    kings -= kingPairs_;
  }
  const KingPair pair =
      hasPawns_ ? KINGS_WITH_PAWNS.pairs[kings] : KINGS_WITHOUT_PAWNS.pairs[kings];
  position.king = {pair.white, pair.black};
  for (int g = groupCount_ - 1; g >= 0; --g) {
    const Group& group = groups_[g];
    const auto squares = placedSquares(group.count, rest % group.size);
    rest /= group.size;
    for (int i = 0; i < group.count; ++i) {
      position.slots[group.first + i].square = static_cast<std::uint8_t>(squares[i] + group.lowest);
    }
  }
  return position;
}

bool Layout::isNumbered(const Position& position, std::uint64_t index) const {
  Squares taken = bitOf(position.king[0]) | bitOf(position.king[1]);
  for (const Man& man : position.men()) {
    if ((taken & bitOf(man.square)) != 0) return false;
    taken |= bitOf(man.square);
  }
  const bool isAmbiguous =
      !hasPawns_ && isDiagonal(position.king[0]) && isDiagonal(position.king[1]);
  return !isAmbiguous || this->index(position) == index;
}

}  // namespace bitbases
