#include "grid.h"

#include <algorithm>

namespace bitbases {

namespace {

constexpr std::array<std::uint8_t, 10> TRIANGLE = {0, 1, 2, 3, 9, 10, 11, 18, 19, 27};

consteval std::array<std::int8_t, 64> makeTriangleNumbers() {
  std::array<std::int8_t, 64> numbers;
  numbers.fill(-1);
  std::int8_t next = 0;
  for (const std::uint8_t square : TRIANGLE) numbers[square] = next++;
  return numbers;
}
constexpr std::array<std::int8_t, 64> TRIANGLE_NUMBERS = makeTriangleNumbers();

constexpr Squares ABOVE_DIAGONAL = 0x7f3f1f0f07030100;

constexpr Squares DIAGONAL = 0x8040201008040201;

constexpr bool isDiagonal(Square square) {
  return rankOf(square) == fileOf(square);
}
constexpr bool isAbove(Square square) {
  return rankOf(square) > fileOf(square);
}

constexpr std::uint32_t pairNumber(std::uint32_t a, std::uint32_t b) {
  return a < b ? b * (b - 1) / 2 + a : a * (a - 1) / 2 + b;
}

constexpr std::uint32_t tripleNumber(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  const std::uint32_t high = std::max({a, b, c});
  const std::uint32_t low = std::min({a, b, c});
  return high * (high - 1) * (high - 2) / 6 + pairNumber(low, a + b + c - high - low);
}

constexpr std::uint32_t groupSize(int count) {
  return count == 1 ? 64 : count == 2 ? pairNumber(0, 64) : 64 * 63 * 62 / 6;
}

// The squares of the pairs and triples of like men by their numbers.
template <std::size_t SIZE>
using Combinations = std::array<std::array<std::uint8_t, MAX_MEN>, SIZE>;

const Combinations<groupSize(2)>& pairs() {
  static const auto PAIRS = [] {
    Combinations<groupSize(2)> pairs{};
    for (std::uint8_t b = 0; b < 64; ++b) {
      for (std::uint8_t a = 0; a < b; ++a) pairs[pairNumber(a, b)] = {a, b};
    }
    return pairs;
  }();
  return PAIRS;
}

const Combinations<groupSize(3)>& triples() {
  static const auto TRIPLES = [] {
    Combinations<groupSize(3)> triples{};
    for (std::uint8_t c = 0; c < 64; ++c) {
      for (std::uint8_t b = 0; b < c; ++b) {
        for (std::uint8_t a = 0; a < b; ++a) triples[tripleNumber(a, b, c)] = {a, b, c};
      }
    }
    return triples;
  }();
  return TRIPLES;
}

constexpr bool isAlike(const Man& a, const Man& b) {
  return a.type == b.type && a.color == b.color;
}

}  // namespace

Squares squaresAboveDiagonal() {
  return ABOVE_DIAGONAL;
}

Grid::Grid(const Material& material, int order)
    : pattern_(material.pattern()), count_(pattern_.count) {
  for (int slot = 0; slot < count_; ++slot) {
    if (pattern_.slots[slot].type == PAWN) pawnSlots_[pawnCount_++] = slot;
  }
  addParts(order);
  addSlices();
}

void Grid::addParts(int order) {
  for (int slot = count_ - 1; slot >= 0; --slot) {
    if (pattern_.slots[slot].type == PAWN) continue;
    if (partCount_ > 0 && isAlike(pattern_.slots[slot], pattern_.slots[slot + 1])) {
      Part& part = parts_[partCount_ - 1];
      --part.first;
      ++part.count;
      part.size = groupSize(part.count);
    } else {
      parts_[partCount_++] = {slot, 1, groupSize(1), 0};
    }
  }
  for (const Part& part : std::span(parts_).first(static_cast<std::size_t>(partCount_))) {
    placements_ *= part.size;
  }
  parts_[partCount_++] = {KING, 1, kings(), 0};

  std::array<int, MAX_MEN + 1> permutation{0, 1, 2, 3};
  for (int i = 0; i < order; ++i) {
    std::next_permutation(permutation.begin(), permutation.begin() + partCount_);
  }
  const std::array<Part, MAX_MEN + 1> parts = parts_;
  std::uint32_t stride = 1;
  for (int i = 0; i < partCount_; ++i) {
    parts_[i] = parts[permutation[i]];
    parts_[i].stride = stride;
    if (parts_[i].first == KING) kingStride_ = stride;
    stride *= parts_[i].size;
  }
}

int Grid::orders() const {
  int orders = 1;
  for (int i = 2; i <= partCount_; ++i) orders *= i;
  return orders;
}

void Grid::addSlices() {
  if (pawnCount_ == 0) {
    pawns_.push_back({});
    return;
  }
  sliceOf_.assign(std::size_t{1} << (6 * pawnCount_), -1);
  const auto visit = [&](const auto& self, int n, MenSquares& squares, Squares taken) -> void {
    if (n == pawnCount_) {
      MenSquares mirrored = squares;
      for (int i = 0; i < pawnCount_; ++i) mirrored[pawnSlots_[i]] ^= 7;
      const std::uint32_t code = pawnCode(squares);
      const std::int32_t known = sliceOf_[pawnCode(mirrored)];
      if (known >= 0 && pawnCode(mirrored) != code) {
        sliceOf_[code] = known | 1;
      } else {
        sliceOf_[code] = static_cast<std::int32_t>(2 * pawns_.size());
        pawns_.push_back(squares);
      }
      return;
    }
    const int slot = pawnSlots_[n];
    const bool isSecond = n > 0 && isAlike(pattern_.slots[slot], pattern_.slots[slot - 1]);
    for (Square square = isSecond ? squares[slot - 1] + 1 : 8; square < 56; ++square) {
      if ((taken & bitOf(square)) != 0) continue;
      squares[slot] = static_cast<std::uint8_t>(square);
      self(self, n + 1, squares, taken | bitOf(square));
    }
  };
  MenSquares squares{};
  visit(visit, 0, squares, 0);
}

std::uint32_t Grid::number(const Part& part, const MenSquares& squares) const {
  const std::uint8_t* const s = &squares[part.first];
  return part.stride * (part.count == 1   ? s[0]
                        : part.count == 2 ? pairNumber(s[0], s[1])
                                          : tripleNumber(s[0], s[1], s[2]));
}

std::uint32_t Grid::pawnCode(MenSquares squares) const {
  // Like pawns in the order of their squares; they have neighbouring slots.
  for (int pass = 1; pass < pawnCount_; ++pass) {
    for (int n = 1; n < pawnCount_; ++n) {
      const int slot = pawnSlots_[n];
      if (isAlike(pattern_.slots[slot], pattern_.slots[slot - 1]) &&
          squares[slot] < squares[slot - 1]) {
        std::swap(squares[slot], squares[slot - 1]);
      }
    }
  }
  std::uint32_t code = 0;
  for (int n = 0; n < pawnCount_; ++n) code = code << 6 | squares[pawnSlots_[n]];
  return code;
}

Grid::Place Grid::find(const Position& frame) const {
  MenSquares squares{};
  for (int slot = 0; slot < count_; ++slot) squares[slot] = frame.slots[slot].square;
  Symmetry symmetry;
  std::uint32_t slice = 0;
  Square king = frame.king[0];
  if (hasPawns()) {
    const std::int32_t known = sliceOf_[pawnCode(squares)];
    slice = static_cast<std::uint32_t>(known >> 1);
    if ((known & 1) != 0) symmetry.mask = 7;
    king = symmetry(king);
  } else {
    symmetry.mask = (fileOf(king) > 3 ? 7 : 0) ^ (rankOf(king) > 3 ? 56 : 0);
    symmetry.transposes = isAbove(symmetry(king));
    king = TRIANGLE_NUMBERS[symmetry(king)];
  }
  if (!symmetry.isNone()) {
    for (int slot = 0; slot < count_; ++slot) {
      squares[slot] = static_cast<std::uint8_t>(symmetry(squares[slot]));
    }
  }
  std::uint32_t word = slice * sliceSize() + static_cast<std::uint32_t>(king) * kingStride_;
  for (int i = 0; i < partCount_; ++i) {
    if (parts_[i].first != KING) word += number(parts_[i], squares);
  }
  return {word, symmetry};
}

Grid::Place Grid::findPosition(const Position& position) const {
  Place place = find(position);
  if (hasPawns()) return place;
  const Square white = place.symmetry(position.king[0]);
  const Square black = place.symmetry(position.king[1]);
  if (!isDiagonal(white) || !isAbove(black)) return place;
  // There is no other symmetry yet that transposes: find() leaves such a king where it is.
  place.symmetry.transposes = true;
  Position turned = position;
  turned.king[0] = place.symmetry(position.king[0]);
  for (Man& man : turned.men()) man.square = static_cast<std::uint8_t>(place.symmetry(man.square));
  return {find(turned).word, place.symmetry};
}

Position Grid::frame(std::uint32_t word) const {
  Position frame = pattern_;
  std::uint32_t rest = word;
  for (int i = 0; i < partCount_; ++i) {
    const Part& part = parts_[i];
    if (part.count == 1) {
      // Most are of 64 squares: a division takes longer.
      const std::uint32_t number = part.size == 64 ? rest & 63 : rest % part.size;
      rest = part.size == 64 ? rest >> 6 : rest / part.size;
      if (part.first == KING) {
        frame.king[0] = king(number);
      } else {
        frame.slots[part.first].square = static_cast<std::uint8_t>(number);
      }
      continue;
    }
    const std::array<std::uint8_t, MAX_MEN>& squares =
        part.count == 2 ? pairs()[rest % part.size] : triples()[rest % part.size];
    rest /= part.size;
    for (int n = 0; n < part.count; ++n) frame.slots[part.first + n].square = squares[n];
  }
  const MenSquares& pawns = pawns_[rest];
  for (int n = 0; n < pawnCount_; ++n) {
    frame.slots[pawnSlots_[n]].square = pawns[pawnSlots_[n]];
  }
  return frame;
}

Square Grid::king(std::uint32_t number) const {
  return hasPawns() ? static_cast<Square>(number) : TRIANGLE[number];
}

int Grid::kingNumber(Square square) const {
  return hasPawns() ? square : TRIANGLE_NUMBERS[square];
}

std::int32_t Grid::offset(const Position& frame, int slot, Square to) const {
  const Square from = frame.slots[slot].square;
  for (int i = 0; i < partCount_; ++i) {
    const Part& part = parts_[i];
    if (slot < part.first || slot >= part.first + part.count || part.first == KING) continue;
    if (part.count == 1) return (to - from) * static_cast<std::int32_t>(part.stride);
    MenSquares squares{};
    for (int n = 0; n < count_; ++n) squares[n] = frame.slots[n].square;
    const std::uint32_t before = number(part, squares);
    squares[slot] = static_cast<std::uint8_t>(to);
    return static_cast<std::int32_t>(number(part, squares) - before);
  }
  return 0;
}

int Grid::pawnSteps(std::uint32_t slice) const {
  int steps = 0;
  for (int n = 0; n < pawnCount_; ++n) {
    const int slot = pawnSlots_[n];
    steps += relativeRank(pattern_.slots[slot].color, pawns_[slice][slot]) - 1;
  }
  return steps;
}

bool Grid::isOnDiagonal(const Position& frame) const {
  return !hasPawns() && isDiagonal(frame.king[0]);
}

std::uint32_t Grid::reflected(const Position& frame) const {
  constexpr Symmetry REFLECTION{0, true};
  Position turned = frame;
  for (Man& man : turned.men()) man.square = static_cast<std::uint8_t>(REFLECTION(man.square));
  return find(turned).word;
}

Squares Grid::counted(std::uint32_t word) const {
  const Position frame = this->frame(word);
  if (isOnDiagonal(frame)) {
    return ~(ABOVE_DIAGONAL | (reflected(frame) < word ? DIAGONAL : 0));
  }
  if (!hasPawns() || fileOf(frame.king[0]) < 4) return ~Squares{0};
  // Are the pawns their own mirror image?
  MenSquares squares{};
  for (int slot = 0; slot < count_; ++slot) squares[slot] = frame.slots[slot].square;
  const std::uint32_t code = pawnCode(squares);
  for (int slot = 0; slot < count_; ++slot) squares[slot] ^= 7;
  return pawnCode(squares) == code ? 0 : ~Squares{0};
}

}  // namespace bitbases
