#include "book/polyglot_format.h"

#include <algorithm>
#include <array>

#include "board/piece.h"
#include "board/square.h"

namespace ombrin::polyglot {

namespace {

constexpr int SQUARE_BITS = 6;
constexpr unsigned SQUARE_MASK = 63;
constexpr int PROMOTION_SHIFT = 2 * SQUARE_BITS;

// By number in the file.
constexpr std::array<PieceType, 5> PROMOTIONS = {NO_PIECE_TYPE, KNIGHT, BISHOP, ROOK, QUEEN};

}  // namespace

std::uint16_t moveOf(const BookEntry& entry) {
  const int from = Square(entry.from & 0x77).index64();
  const int to = Square(entry.to & 0x77).index64();
  const auto* const promotion = std::ranges::find(PROMOTIONS, PieceType{entry.promotion});
  return static_cast<std::uint16_t>(to | from << SQUARE_BITS |
                                    (promotion - PROMOTIONS.begin()) << PROMOTION_SHIFT);
}

void setMove(BookEntry& entry, std::uint16_t move) {
  const auto square = [move](int shift) {
    const auto index = static_cast<int>(move >> shift & SQUARE_MASK);
    return static_cast<std::uint8_t>(Square::fromIndex64(index).number());
  };
  entry.to = square(0);
  entry.from = square(SQUARE_BITS);
  const std::size_t promotion = move >> PROMOTION_SHIFT;
  entry.promotion = promotion < PROMOTIONS.size() ? PROMOTIONS[promotion] : NO_PIECE_TYPE;
}

bool isSane(std::uint16_t move) {
  return (move & SQUARE_MASK) != (move >> SQUARE_BITS & SQUARE_MASK) &&
         (move >> PROMOTION_SHIFT) < PROMOTIONS.size();
}

std::uint32_t weightOf(const BookEntry& entry) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(entry.games(), LARGEST_WEIGHT));
}

}  // namespace ombrin::polyglot
