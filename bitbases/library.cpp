// The functions by which a program asks for endgame values. All arguments are 32-bit integers but
// the directory and the log; nothing else of this library is visible from outside.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "file.h"
#include "geometry.h"
#include "material.h"
#include "moves.h"
#include "progress.h"
#include "table_set.h"

namespace {

using namespace bitbases;

constexpr int NOT_HELD = 99999;
// Of a win without pawns; callers know better than any table how to mate.
constexpr int PAWNLESS_WIN = 5000;

using Log = void(const char* line);

void logToStandardError(const char* line) {
  std::fprintf(stderr, "%s\n", line);
}
std::atomic<Log*> log = logToStandardError;

void reportDamage(const std::string& path) {
  log.load()(("EGBB: damaged, not looked up: " + path).c_str());
}

TableSet tables(reportDamage);
// How many tables of so many men, kings included, are there.
std::array<std::atomic<int>, MAX_MEN + 3> held;

// Names the tables that are missing among those of so many men, unless none is there.
void reportMissing(int men, const std::vector<Material>& missing) {
  constexpr std::size_t MOST_NAMED = 10;
  if (missing.empty() || held[men] == 0) return;
  std::string line = "EGBB: tables of " + std::to_string(men) + " men that are not there: ";
  for (std::size_t i = 0; i < std::min(missing.size(), MOST_NAMED); ++i) {
    line.append(i == 0 ? "" : ", ").append(missing[i].name());
  }
  if (missing.size() > MOST_NAMED) {
    line.append(" and ").append(std::to_string(missing.size() - MOST_NAMED)).append(" more");
  }
  log.load()(line.c_str());
}

// Callers find out by one position of each number of men whether to ask about any: white pawns on
// a3 and b3 and a black one on h7, as many as there can be, with the kings on a1 and h8. White, to
// move, wins them all, and what tables there are shall not be lost for want of that one.
bool isSample(const Position& sorted) {
  constexpr std::array<Man, MAX_MEN> MEN = {{{0, PAWN, 16}, {0, PAWN, 17}, {1, PAWN, 55}}};
  const auto isAlike = [](const Man& a, const Man& b) {
    return a.color == b.color && a.type == b.type && a.square == b.square;
  };
  return sorted.side == 0 && sorted.king == std::array{0, 63} && sorted.count > 0 &&
         std::equal(sorted.men().begin(), sorted.men().end(), MEN.begin(), isAlike);
}

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
  std::optional<Value> value = tables.value(position);
  if (!value && held[position.count + 2] > 0 && isSample(position)) value = WIN;
  if (!value) return NOT_HELD;
  if (*value == DRAW) return 0;
  const Color winner = *value == WIN ? side : 1 - side;
  const int win = position.hasPawns() ? progress(position, winner) : PAWNLESS_WIN;
  return *value == WIN ? win : -win;
}

}  // namespace

extern "C" {

// Opens whatever tables the directory has. The cache takes so many bytes at most; the loading mode,
// which callers set to 1, makes no difference.
void load_egbb_5men(const char* directory, int cacheBytes, int /*mode*/) {
  if (directory == nullptr) return;
  stayLoaded();
  tables.setCache(static_cast<std::size_t>(std::max(cacheBytes, 0)));
  for (int men = 3; men <= MAX_MEN + 2; ++men) {
    std::vector<Material> missing;
    int count = 0;
    for (const Material& material : materialsOf(men)) {
      if (tables.add(directory, material)) {
        ++count;
      } else {
        missing.push_back(material);
      }
    }
    held[men] = count;
    reportMissing(men, missing);
  }
}

// Has what is worth a user's notice, such as a damaged file, told to the function, a line without
// its end each time, on any thread. Until then, and for null, it goes to standard error.
void log_egbb_5men(void (*function)(const char* line)) {
  log = function != nullptr ? function : logToStandardError;
}

// Any thread. 99999 when the table is not held or the arguments are no position, else 0 for a draw,
// a positive value for a win and a negative one for a loss of the side to move.
int probe_egbb_5men(int side, int whiteKing, int blackKing, int piece1, int square1, int piece2,
                    int square2, int piece3, int square3) {
  return probe(side, whiteKing, blackKing,
               {{{piece1, square1}, {piece2, square2}, {piece3, square3}}});
}

}  // extern "C"
