// Piece types, piece indices, and the small constant tables that describe them.
#pragma once

#include <array>
#include <cstdint>

#include "board/color.h"

namespace ombrin {

// Codes 5 and above slide. The letters by code are " pnk?brq".
enum PieceType : std::uint8_t {
  NO_PIECE_TYPE = 0,
  PAWN = 1,
  KNIGHT = 2,
  KING = 3,
  BISHOP = 5,
  ROOK = 6,
  QUEEN = 7,
};

inline constexpr std::array<char, 8> PIECE_LETTERS = {' ', 'p', 'n', 'k', '?', 'b', 'r', 'q'};

constexpr char upperLetter(PieceType type) {
  return static_cast<char>(PIECE_LETTERS[type] - 'a' + 'A');
}

// The order in which piece lists are walked.
inline constexpr std::array<PieceType, 6> PIECE_TYPES = {PAWN, KNIGHT, KING, BISHOP, ROOK, QUEEN};

// Every type owns a run of slots in its colour's piece list, followed by a terminator slot.
struct SlotRun {
  int first;
  int terminator;
};

namespace piece_tables {
inline constexpr std::array<SlotRun, 8> RUNS = {
    {{0, 0}, {8, 16}, {20, 30}, {4, 5}, {0, 0}, {32, 42}, {43, 53}, {54, 63}}};
}

constexpr SlotRun slotRun(PieceType type) {
  return piece_tables::RUNS[type];
}

// What a piece can attack, as bits: the attack table (geometry.h) holds the same bits for every
// difference of squares, so one AND tells whether a piece could reach a square.
enum AttackBits : std::uint8_t {
  WHITE_PAWN_ATTACK = 1,
  BLACK_PAWN_ATTACK = 2,
  KING_ATTACK = 4,
  KNIGHT_ATTACK = 8,
  DIAGONAL_ATTACK = 16,
  STRAIGHT_ATTACK = 32,
  LINE_ATTACK = DIAGONAL_ATTACK | STRAIGHT_ATTACK,
};

// The bit of a colour in piece indices and piece kinds.
constexpr int colorBit(Color color) {
  return 64 << color;
}

namespace piece_tables {

consteval std::array<std::uint8_t, 64> makeTypes() {
  std::array<std::uint8_t, 64> types{};
  for (const PieceType type : PIECE_TYPES) {
    for (int slot = slotRun(type).first; slot < slotRun(type).terminator; ++slot) {
      types[slot] = type;
    }
  }
  return types;
}
inline constexpr std::array<std::uint8_t, 64> TYPES = makeTypes();

consteval std::array<std::uint8_t, 256> makeKinds() {
  // By colour and type; only pawns attack differently.
  constexpr std::array<std::array<std::uint8_t, 8>, 2> ATTACKS = {
      {{0, WHITE_PAWN_ATTACK, KNIGHT_ATTACK, KING_ATTACK, 0, DIAGONAL_ATTACK, STRAIGHT_ATTACK,
        LINE_ATTACK},
       {0, BLACK_PAWN_ATTACK, KNIGHT_ATTACK, KING_ATTACK, 0, DIAGONAL_ATTACK, STRAIGHT_ATTACK,
        LINE_ATTACK}}};
  std::array<std::uint8_t, 256> kinds{};
  for (const Color color : {WHITE, BLACK}) {
    for (int slot = 0; slot < 64; ++slot) {
      const int type = TYPES[slot];
      if (type == NO_PIECE_TYPE) continue;
      kinds[colorBit(color) + slot] =
          static_cast<std::uint8_t>(colorBit(color) + ATTACKS[color][type]);
    }
  }
  kinds[192] = 192;
  return kinds;
}
inline constexpr std::array<std::uint8_t, 256> KINDS = makeKinds();

// Exchange values in pawn units, by piece index.
consteval std::array<std::uint8_t, 256> makeValues() {
  constexpr std::array<std::uint8_t, 8> VALUES = {0, 1, 3, 0, 0, 3, 5, 10};
  std::array<std::uint8_t, 256> values{};
  for (int slot = 0; slot < 64; ++slot) {
    values[64 + slot] = values[128 + slot] = VALUES[TYPES[slot]];
  }
  return values;
}
inline constexpr std::array<std::uint8_t, 256> VALUES = makeValues();

}  // namespace piece_tables

// A piece index: what stands on a square. 0 is an empty square, 192 is off the board, and anything
// else is a piece: the colour bit (64 White, 128 Black) plus a slot from 0 to 63. The slot tells
// the type, and it names one piece among several of its type for as long as the piece lives.
class Piece {
 public:
  constexpr Piece() = default;  // empty
  constexpr explicit Piece(int index) : index_(static_cast<std::uint8_t>(index)) {}
  constexpr Piece(Color color, int slot) : Piece(colorBit(color) + slot) {}
  static constexpr Piece king(Color color) { return {color, slotRun(KING).first}; }

  constexpr int index() const { return index_; }
  constexpr int slot() const { return index_ & 63; }
  constexpr bool isEmpty() const { return index_ == 0; }
  // A piece of that colour; false for an empty square and off the board.
  constexpr bool isOf(Color color) const { return (index_ & 192) == colorBit(color); }
  // Empty or the enemy's, and on the board: where a piece of that colour may go.
  constexpr bool mayBeEnteredBy(Color color) const { return (index_ & colorBit(color)) == 0; }
  // Of a piece only.
  constexpr Color color() const { return static_cast<Color>(index_ >> 7); }
  constexpr PieceType type() const { return static_cast<PieceType>(piece_tables::TYPES[slot()]); }
  // The colour bit plus the attack bits; 0 for an empty square, 192 off the board.
  constexpr int kind() const { return piece_tables::KINDS[index_]; }
  // Of a piece only: bishop, rook or queen.
  constexpr bool isSlider() const { return (index_ & 32) != 0; }
  constexpr bool isPawn() const { return (index_ & 56) == 8; }
  constexpr bool isPawnOf(Color color) const { return (index_ & 248) == colorBit(color) + 8; }
  // Exchange value in pawn units: 1, 3, 3, 5, 10; 0 for a king and for an empty square.
  constexpr int value() const { return piece_tables::VALUES[index_]; }
  // Upper case for White.
  constexpr char letter() const {
    return isOf(WHITE) ? upperLetter(type()) : PIECE_LETTERS[type()];
  }

  friend constexpr bool operator==(Piece, Piece) = default;

 private:
  std::uint8_t index_ = 0;
};

inline constexpr Piece EMPTY{};
inline constexpr Piece OFF_BOARD{192};

}  // namespace ombrin
