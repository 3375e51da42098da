#include "book/book_key.h"

#include <array>
#include <cstddef>

#include "board/zobrist.h"

namespace ombrin {

namespace {

constexpr int ALL_RIGHTS = 15;

// By rights; their base keys are joined by OR here, not by XOR.
consteval std::array<std::uint64_t, 16> makeLegacyCastle() {
  std::array<std::uint64_t, 16> keys{};
  for (int rights = 0; rights < 16; ++rights) {
    for (int bit = 0; bit < 4; ++bit) {
      if ((rights >> bit & 1) != 0) keys[rights] |= castleKey(1 << bit);
    }
  }
  return keys;
}
constexpr std::array<std::uint64_t, 16> LEGACY_CASTLE = makeLegacyCastle();

// Which legacy key a move from that square stands for. The older scheme counts the rooks of a1, a8,
// h1 and h8 as bits 0 to 3, in this order.
constexpr int legacyRights(Square from) {
  if (from == A1) return 1;
  if (from == A8) return 2;
  if (from == H1) return 4;
  if (from == E1) return 5;
  if (from == H8) return 8;
  return from == E8 ? 10 : 0;
}

consteval std::uint64_t makeStartKey() {
  constexpr std::array<PieceType, 8> BACK_RANK = {ROOK, KNIGHT, BISHOP, QUEEN,
                                                  KING, BISHOP, KNIGHT, ROOK};
  std::uint64_t key = castleKey(ALL_RIGHTS);
  for (int file = 0; file < 8; ++file) {
    for (const Color color : {WHITE, BLACK}) {
      const auto place = [&key, color, file](PieceType type, int rank) {
        const Square square = Square::at(file, color == WHITE ? rank : 7 - rank);
        key ^= pieceKey(Piece(color, slotRun(type).first), square);
      };
      place(BACK_RANK[static_cast<std::size_t>(file)], 0);
      place(PAWN, 1);
    }
  }
  return key;
}
constexpr std::uint64_t START_KEY = makeStartKey();

}  // namespace

std::uint64_t bookKey(const Board& board) {
  return board.hash ^ board.side;
}

std::uint64_t legacyKey(const Board& board) {
  std::uint64_t key = bookKey(board) ^ castleKey(board.rights) ^ LEGACY_CASTLE[ALL_RIGHTS];
  for (std::uint32_t ply = 0; ply < board.ply; ++ply) {
    key ^= LEGACY_CASTLE[legacyRights(board.moveHistory[ply].from())];
  }
  return key;
}

std::uint64_t startBookKey() {
  return START_KEY;
}

std::uint64_t startLegacyKey() {
  return START_KEY ^ castleKey(ALL_RIGHTS) ^ LEGACY_CASTLE[ALL_RIGHTS];
}

}  // namespace ombrin
