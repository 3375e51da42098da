// What the tables speak about: positions of two kings and at most three other men.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace bitbases {

// Squares are 0 to 63, file + 8 * rank; 0 is White and 1 Black.
using Square = int;
using Color = int;

// In the order in which a side's men are written and kept.
enum Type : std::uint8_t { QUEEN, ROOK, BISHOP, KNIGHT, PAWN };
inline constexpr int TYPES = 5;

// The men of a table besides the two kings.
inline constexpr int MAX_MEN = 3;

// Of the side to move.
enum Value : std::uint8_t { DRAW, WIN, LOSS };
constexpr Value negated(Value value) {
  return value == WIN ? LOSS : value == LOSS ? WIN : DRAW;
}
// Which of two values a side would choose.
constexpr Value better(Value a, Value b) {
  return a == WIN || b == WIN ? WIN : a == DRAW || b == DRAW ? DRAW : LOSS;
}

struct Man {
  std::uint8_t color = 0;
  Type type = QUEEN;
  std::uint8_t square = 0;
};

constexpr int rankOf(Square square) {
  return square >> 3;
}
constexpr int fileOf(Square square) {
  return square & 7;
}
constexpr Square upOf(Color color) {
  return color == 0 ? 8 : -8;
}
// Ranks from 0, counted from the colour's own side.
constexpr int relativeRank(Color color, Square square) {
  return color == 0 ? rankOf(square) : 7 - rankOf(square);
}
constexpr int distance(Square a, Square b) {
  const int ranks = rankOf(a) < rankOf(b) ? rankOf(b) - rankOf(a) : rankOf(a) - rankOf(b);
  const int files = fileOf(a) < fileOf(b) ? fileOf(b) - fileOf(a) : fileOf(a) - fileOf(b);
  return ranks > files ? ranks : files;
}

// Without castling rights and without an en-passant square. The men stand in any order until
// sortMen() has put White's before Black's and each side's by type.
struct Position {
  Color side = 0;
  std::array<Square, 2> king{};
  int count = 0;
  std::array<Man, MAX_MEN> slots{};

  constexpr std::span<const Man> men() const {
    return std::span(slots).first(static_cast<std::size_t>(count));
  }
  constexpr std::span<Man> men() { return std::span(slots).first(static_cast<std::size_t>(count)); }
  constexpr bool hasPawns() const {
    for (const Man& man : men()) {
      if (man.type == PAWN) return true;
    }
    return false;
  }
  constexpr void add(Man man) { slots[static_cast<std::size_t>(count++)] = man; }
  constexpr void remove(int slot) {
    --count;
    for (int i = slot; i < count && i + 1 < MAX_MEN; ++i) slots[i] = slots[i + 1];
  }
};

constexpr void sortMen(Position& position) {
  const auto isBefore = [](const Man& a, const Man& b) {
    return a.color != b.color ? a.color < b.color : a.type < b.type;
  };
  for (int i = 1; i < position.count; ++i) {
    for (int j = i; j > 0 && isBefore(position.slots[j], position.slots[j - 1]); --j) {
      const Man man = position.slots[j];
      position.slots[j] = position.slots[j - 1];
      position.slots[j - 1] = man;
    }
  }
}

// The same position seen from the other side: colours exchanged, ranks turned over.
constexpr Position colorsExchanged(const Position& position) {
  Position other = position;
  other.side = 1 - position.side;
  other.king = {position.king[1] ^ 56, position.king[0] ^ 56};
  for (Man& man : other.men()) {
    man.color = static_cast<std::uint8_t>(1 - man.color);
    man.square = static_cast<std::uint8_t>(man.square ^ 56);
  }
  return other;
}

}  // namespace bitbases
