#pragma once

#include <cstdint>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin {

// A move in one word, with all that is needed to make it and to take it back. 0 is the null move.
//
//   bits 0-6 destination, 8-14 origin, 16-23 captured piece index, 24-26 promotion type,
//   27 en passant, 28 castling (the king's two-file move), 29 pawn double step
//   flags: 3 gives check, 7 gives discovered check, 11 searched with a reduction, 15 x-ray
//
// Moves as generated carry no check flags (those of the check generator aside); making a move
// returns the word with them, and that word is how the next ply knows whether it is in check.
class Move {
 public:
  static constexpr std::uint32_t CHECK = 1U << 3;
  static constexpr std::uint32_t DISCOVERED_CHECK = 1U << 7;
  static constexpr std::uint32_t REDUCED = 1U << 11;
  static constexpr std::uint32_t XRAY = 1U << 15;
  static constexpr std::uint32_t EN_PASSANT = 1U << 27;
  static constexpr std::uint32_t CASTLING = 1U << 28;
  static constexpr std::uint32_t DOUBLE_STEP = 1U << 29;
  // The bits that tell one move of a position from another.
  static constexpr std::uint32_t IDENTITY = 0x3fff7777;

  constexpr Move() = default;  // the null move
  constexpr explicit Move(std::uint32_t word) : word_(word) {}
  constexpr Move(Square from, Square to) : word_(squares(from, to)) {}
  constexpr Move(Square from, Square to, Piece captured, std::uint32_t special = 0)
      : word_(squares(from, to) | static_cast<std::uint32_t>(captured.index()) << 16 | special) {}
  static constexpr std::uint32_t promotionTo(PieceType type) {
    return static_cast<std::uint32_t>(type) << 24;
  }

  constexpr std::uint32_t word() const { return word_; }
  constexpr bool isNull() const { return word_ == 0; }
  constexpr explicit operator bool() const { return word_ != 0; }
  constexpr Square to() const { return Square(static_cast<int>(word_ & 0x77)); }
  constexpr Square from() const { return Square(static_cast<int>(word_ >> 8 & 0x77)); }
  constexpr Piece captured() const { return Piece(static_cast<int>(word_ >> 16 & 0xff)); }
  constexpr PieceType promotion() const { return static_cast<PieceType>(word_ >> 24 & 7); }
  constexpr bool isCapture() const { return (word_ & 0xff0000) != 0; }
  constexpr bool isPromotion() const { return (word_ & 0x7000000) != 0; }
  constexpr bool isEnPassant() const { return (word_ & EN_PASSANT) != 0; }
  constexpr bool isCastling() const { return (word_ & CASTLING) != 0; }
  constexpr bool isDoubleStep() const { return (word_ & DOUBLE_STEP) != 0; }
  // Promotion, en passant or castling: not just one man moving and one disappearing.
  constexpr bool isSpecial() const { return (word_ & 0x1f000000) != 0; }
  // Neither captures nor promotes.
  constexpr bool isQuiet() const { return (word_ & 0xfff0000) == 0; }
  constexpr bool givesDirectCheck() const { return (word_ & CHECK) != 0; }
  constexpr bool givesDiscoveredCheck() const { return (word_ & DISCOVERED_CHECK) != 0; }
  constexpr bool isCheck() const { return (word_ & (CHECK | DISCOVERED_CHECK)) != 0; }
  constexpr bool isDoubleCheck() const {
    return (word_ & (CHECK | DISCOVERED_CHECK)) == (CHECK | DISCOVERED_CHECK);
  }
  constexpr bool isReduced() const { return (word_ & REDUCED) != 0; }
  constexpr bool isXray() const { return (word_ & XRAY) != 0; }
  // Of an en-passant capture, the square of the pawn taken.
  constexpr Square enPassantVictim() const { return to().acrossDoubleStep(); }
  // The square on which the captured piece stands.
  constexpr Square victimSquare() const { return isEnPassant() ? enPassantVictim() : to(); }
  // Of a castling, the square that the king passes over, where the rook goes.
  constexpr Square castledRook() const { return from() + (to() - from()) / 2; }

  // The same move without its flags.
  constexpr Move identity() const { return Move(word_ & IDENTITY); }
  constexpr bool isSameAs(Move other) const { return ((word_ ^ other.word_) & IDENTITY) == 0; }
  constexpr Move with(std::uint32_t flags) const { return Move(word_ | flags); }
  constexpr Move withCaptured(Piece piece) const {
    return Move((word_ & ~0xff0000U) | static_cast<std::uint32_t>(piece.index()) << 16);
  }

  // All bits equal, flags included; compare moves of different sources with isSameAs.
  friend constexpr bool operator==(Move, Move) = default;

 private:
  static constexpr std::uint32_t squares(Square from, Square to) {
    return static_cast<std::uint32_t>(from.number() << 8 | to.number());
  }

  std::uint32_t word_ = 0;
};

inline constexpr Move NULL_MOVE{};

// Room for the moves of any position that setFen accepts (no position has more than 218).
inline constexpr int MAX_MOVES = 256;

}  // namespace ombrin
