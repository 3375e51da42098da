// The two functions by which a program asks for endgame values. All arguments are 32-bit integers
// but the directory; nothing else of this library is visible from outside.
#include <cstdint>

#include "geometry.h"
#include "mapped_file.h"
#include "material.h"
#include "moves.h"
#include "progress.h"
#include "table_set.h"

namespace {

using namespace bitbases;

constexpr int NOT_HELD = 99999;
// Of a win without pawns; callers know better than any table how to mate.
constexpr int PAWNLESS_WIN = 5000;

TableSet tables;

bool isSquare(int number) {
  return number >= 0 && number < 64;
}

// Adds the man that a caller's pair means: nothing for code 0, White's from 2 and Black's from 8,
// each queen, rook, bishop, knight, pawn. False for an impossible man.
bool addMan(Position& position, Squares& taken, int code, int square) {
  if (code == 0) return true;
  const Color color = code >= 8 ? 1 : 0;
  const int type = color == 0 ? code - 2 : code - 8;
  if (type < 0 || type >= TYPES || !isSquare(square)) return false;
  if (type == PAWN && (rankOf(square) == 0 || rankOf(square) == 7)) return false;
  if ((taken & bitOf(square)) != 0) return false;
  taken |= bitOf(square);
  position.add({static_cast<std::uint8_t>(color), static_cast<Type>(type),
                static_cast<std::uint8_t>(square)});
  return true;
}

int probe(int side, int whiteKing, int blackKing,
          const std::array<std::array<int, 2>, MAX_MEN>& pairs) {
  if ((side != 0 && side != 1) || !isSquare(whiteKing) || !isSquare(blackKing)) return NOT_HELD;
  Position position;
  position.side = side;
  position.king = {whiteKing, blackKing};
  Squares taken = bitOf(whiteKing) | bitOf(blackKing);
  for (const auto& [code, square] : pairs) {
    if (!addMan(position, taken, code, square)) return NOT_HELD;
  }
  if (!isLegal(position)) return NOT_HELD;
  const std::optional<Value> value = tables.value(position);
  if (!value) return NOT_HELD;
  if (*value == DRAW) return 0;
  const Color winner = *value == WIN ? side : 1 - side;
  const int win = position.hasPawns() ? progress(position, winner) : PAWNLESS_WIN;
  return *value == WIN ? win : -win;
}

}  // namespace

extern "C" {

// Maps whatever tables the directory has. There is no cache but the operating system's, so neither
// its size nor the loading mode, which callers set to 1, makes a difference.
void load_egbb_5men(const char* directory, int /*cacheBytes*/, int /*mode*/) {
  if (directory == nullptr) return;
  stayLoaded();
  for (int men = 3; men <= MAX_MEN + 2; ++men) {
    for (const Material& material : materialsOf(men)) tables.add(directory, material);
  }
}

// Any thread. 99999 when the table is not held or the arguments are no position, else 0 for a draw,
// a positive value for a win and a negative one for a loss of the side to move.
int probe_egbb_5men(int side, int whiteKing, int blackKing, int piece1, int square1, int piece2,
                    int square2, int piece3, int square3) {
  return probe(side, whiteKing, blackKing,
               {{{piece1, square1}, {piece2, square2}, {piece3, square3}}});
}

}  // extern "C"
