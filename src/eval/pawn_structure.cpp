#include "eval/pawn_structure.h"

#include <array>
#include <bit>

#include "board/square_set.h"
#include "eval/square_table.h"

namespace ombrin {

namespace {

using PhaseRankTable = std::array<PhaseScore, 8>;

constexpr SquareSet LIGHT_SQUARES{0x55aa55aa55aa55aa};

consteval PhaseSquareTable halved(PhaseSquareTable table) {
  for (PhaseScore& score : table) score = {score.middlegame() / 2, score.endgame() / 2};
  return table;
}

// clang-format off
constexpr PhaseSquareTable PAWN_SQUARE = join(
    {  0,  0,  0,  0,  0,  0,  0,   0,
     -12, -6,  0,  8,  8,  0, -6, -12,
     -12, -6,  0, 20, 20,  0, -6, -12,
     -12,  0,  8, 24, 24,  8,  0, -12,
     -12,  0,  8, 20, 20,  8,  0, -12,
     -12,  0,  8, 16, 16,  8,  0, -12,
     -12,  0,  8, 16, 16,  8,  0, -12},
    {  0,  0,  0,  0,  0,  0,  0,   0,
       0,  0, -4,  0,  0, -4,  0,   0,
       0,  0, -4,  1,  1, -4,  0,   0,
       8,  6,  4,  2,  2,  4,  6,   8,
      20, 12,  8,  3,  3,  8, 12,  20,
      24, 16, 12,  4,  4, 12, 16,  24,
      24, 16, 12,  5,  5, 12, 16,  24});

constexpr PhaseSquareTable DEFENDED_FREE = join(
    {  0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  2,  2,  0,  0,   0,
       0,  2,  4,  5,  5,  4,  2,   0,
       1,  4,  6,  8,  8,  6,  4,   1}, {});

constexpr PhaseSquareTable DOUBLED = join(
    {  0,   0,   0,   0,   0,   0,   0,   0,
       0,   0,   0,   0,   0,   0,   0,   0,
     -35,  -5,   0, -10, -10,   0,  -5, -35,
     -25,   0,  -5,  -5,  -5,  -5,   0, -25,
     -20,  -5,  -5,  -5,  -5,  -5,  -5, -20,
     -15,  -5,  -5,  -5,  -5,  -5,  -5, -15},
    {  0,   0,   0,   0,   0,   0,   0,   0,
       0,   0,   0,   0,   0,   0,   0,   0,
     -35, -25, -25, -25, -25, -25, -25, -35,
     -30, -20, -20, -20, -20, -20, -20, -30,
     -25, -15, -15, -15, -15, -15, -15, -25,
     -20, -10, -10, -10, -10, -10, -10, -20,
     -10, -10, -10, -10, -10, -10, -10, -10});

constexpr PhaseSquareTable PASSED = join(
    {  0,   0,   0,   0,   0,   0,   0,   0,
       4,   4,   4,   4,   4,   4,   4,   4,
       4,   4,   4,   4,   4,   4,   4,   4,
      20,  18,  14,   4,   4,  14,  18,  20,
      36,  32,  28,  20,  20,  28,  32,  36,
      64,  48,  44,  44,  44,  44,  48,  64,
      90,  90,  90,  90,  90,  90,  90,  90},
    {  0,   0,   0,   0,   0,   0,   0,   0,
      12,  10,   8,   6,   6,   8,  10,  12,
       8,   6,   4,   2,   2,   4,   6,   8,
      20,  18,  16,  14,  14,  16,  18,  20,
      48,  44,  40,  40,  40,  40,  44,  48,
     100, 100,  88,  76,  76,  88, 100, 100,
     144, 134, 112, 110, 110, 112, 134, 144});

constexpr PhaseSquareTable BACKWARD = halved(join(
    {  0,   0,   0,   0,   0,   0,   0,   0,
     -10, -10, -10, -12, -12, -10, -10, -10,
     -10, -10, -10, -12, -12, -10, -10, -10,
     -12, -12, -12, -12, -12, -12, -12, -12,
     -16, -16, -16, -16, -16, -16, -16, -16,
     -20, -20, -20, -20, -20, -20, -20, -20,
     -10, -10, -10, -10, -10, -10, -10, -10},
    {  0,   0,   0,   0,   0,   0,   0,   0,
     -20, -20, -20, -20, -20, -20, -20, -20,
     -20, -20, -20, -20, -20, -20, -20, -20,
     -20, -20, -20, -20, -20, -20, -20, -20,
     -15, -15, -15, -15, -15, -15, -15, -15,
     -10, -10, -10, -10, -10, -10, -10, -10,
     -10, -10, -10, -10, -10, -10, -10, -10}));

// By relative rank.
constexpr PhaseRankTable ISOLATED = {{
    {0, 0}, {-10, -16}, {-10, -16}, {-10, -12}, {-10, -10}, {-10, -10}, {-10, -10}, {0, 0}}};
constexpr PhaseRankTable PASSED_DUO = {{
    {0, 0}, {0, 0}, {0, 0}, {16, 20}, {20, 32}, {24, 48}, {40, 100}, {0, 0}}};
constexpr PhaseRankTable PASSED_DEFENDED = {{
    {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {16, 16}, {24, 24}, {0, 0}}};
constexpr PhaseRankTable CANDIDATE = {{
    {0, 0}, {0, 0}, {0, 0}, {8, 8}, {32, 54}, {48, 80}, {0, 0}, {0, 0}}};

// Of a rook, by the number of open files.
constexpr std::array<int, 9> ROOK_ON_OPEN_FILE = {0, 16, 16, 16, 12, 8, -2, -2, 0};
constexpr int ROOK_ON_HALF_OPEN_FILE = 8;

// On a file that no pawn blocks ahead, some weaknesses count more.
constexpr PhaseScore DOUBLED_OPEN = {-10, 0};
constexpr PhaseScore ISOLATED_OPEN = {-16, -12};
constexpr PhaseScore BACKWARD_OPEN = {-12, -2};

// By king zone, for the squares of the own pawns.
constexpr std::array<SquareTable, 3> SHELTER = {{
    {0, 0, 0, 0, 0, 0, 0, 0,
     5, 7, 4, 0, 0, 0, 0, 0,
     4, 5, 2, 0, 0, 0, 0, 0,
     2, 3, 1, 0, 0, 0, 0, 0,
     1, 1, 1, 0, 0, 0, 0, 0,
     1, 1, 1, 0, 0, 0, 0, 0,
     1, 1, 1, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 2, 4, 4, 2, 0, 0,
     0, 0, 1, 2, 2, 1, 0, 0,
     0, 0, 1, 1, 1, 1, 0, 0,
     0, 0, 1, 0, 0, 1, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 4, 7, 5,
     0, 0, 0, 0, 0, 2, 5, 4,
     0, 0, 0, 0, 0, 1, 3, 2,
     0, 0, 0, 0, 0, 1, 1, 1,
     0, 0, 0, 0, 0, 1, 1, 1,
     0, 0, 0, 0, 0, 1, 1, 1}}};

// By zone of the king that is stormed, for the squares of the storming pawns as their side sees
// them.
constexpr std::array<SquareTable, 3> STORM = {{
    {0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     1, 1, 1, 1, 0, 0, 0, 0,
     2, 2, 2, 2, 0, 0, 0, 0,
     3, 3, 3, 3, 0, 0, 0, 0,
     1, 1, 1, 1, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 1, 2, 2, 1, 0, 0,
     0, 0, 3, 3, 3, 3, 0, 0,
     0, 0, 2, 2, 2, 2, 0, 0,
     0, 0, 1, 1, 1, 1, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 0, 0, 0, 0,
     0, 0, 0, 0, 1, 1, 1, 1,
     0, 0, 0, 0, 2, 2, 2, 2,
     0, 0, 0, 0, 3, 3, 3, 3,
     0, 0, 0, 0, 1, 1, 1, 1}}};
// clang-format on

constexpr bool isMirrorImage(const SquareTable& a, const SquareTable& b) {
  for (int index = 0; index < 64; ++index) {
    if (a[index] != b[index ^ 7]) return false;
  }
  return true;
}
static_assert(isMirrorImage(SHELTER[0], SHELTER[2]) && isMirrorImage(STORM[0], STORM[2]));
static_assert(isFileSymmetric(SHELTER[1]) && isFileSymmetric(STORM[1]));
static_assert(isFileSymmetric(PAWN_SQUARE) && isFileSymmetric(DOUBLED));
static_assert(isFileSymmetric(PASSED) && isFileSymmetric(BACKWARD));
static_assert(isFileSymmetric(DEFENDED_FREE));

// The pawns of both colours as one of them sees the board.
struct PawnView {
  SquareSet own;
  SquareSet enemy;

  SquareSet all() const { return own | enemy; }
};

PawnView viewPawns(const Board& board, Color color) {
  const PawnView view{board.men(color, PAWN), board.men(~color, PAWN)};
  return color == WHITE ? view : PawnView{view.own.flipped(), view.enemy.flipped()};
}

// Squares with more of `helpers` than of `guards` beside them.
SquareSet withMoreBeside(SquareSet helpers, SquareSet guards) {
  const SquareSet oneHelper = helpers.beside();
  const SquareSet twoHelpers = helpers.left() & helpers.right();
  const SquareSet oneGuard = guards.beside();
  const SquareSet twoGuards = guards.left() & guards.right();
  return (oneHelper & ~oneGuard) | (twoHelpers & ~twoGuards);
}

// The pawns that can come to be defended: they can safely join their neighbours, or a neighbour can
// come up to them.
SquareSet supportable(const PawnView& view) {
  const SquareSet free = ~view.all();
  // Squares that can be taken and held with the help of the neighbours: more own pawns could defend
  // them than enemy pawns attack them.
  const SquareSet tenable = free & withMoreBeside(view.own.ahead(), view.enemy.behind());
  const SquareSet onStart = view.own & SquareSet::rank(1, WHITE);
  const SquareSet advancing =
      tenable.behind() | (onStart & free.behind() & tenable.behind().behind());
  // A neighbour one step behind defends from its post, unless an enemy pawn guards that.
  const SquareSet posts = free & view.own.ahead();
  const SquareSet fromLeft = posts.right().ahead() & ~view.enemy.right().right();
  const SquareSet fromRight = posts.left().ahead() & ~view.enemy.left().left();
  return view.own & (advancing | fromLeft | fromRight);
}

// The own pawns of a view, by what the rules ask about them.
struct PawnKinds {
  explicit PawnKinds(const PawnView& view)
      : duo(view.own & view.own.beside()),
        defended(view.own & view.own.pawnAttacks(WHITE)),
        open(view.own & ~view.all().allBehind()),
        unopposed(view.own & ~view.enemy.allBehind().beside()),
        passed(open & unopposed),
        doubled(view.own & ~defended & view.all().allAhead()),
        isolated(view.own & ~SquareSet::ofFiles(view.own.files()).beside()),
        backward(view.own & ~(isolated | defended | supportable(view))),
        candidates(open & ~(passed | isolated)) {}

  SquareSet duo;         // with an own pawn beside it
  SquareSet defended;    // by a pawn
  SquareSet open;        // no pawn ahead on its file
  SquareSet unopposed;   // no enemy pawn ahead on the neighbouring files
  SquareSet passed;      // both
  SquareSet doubled;     // undefended, with a pawn of either colour behind it
  SquareSet isolated;    // no own pawns on the neighbouring files
  SquareSet backward;    // neither isolated nor defended, and it cannot come to be defended
  SquareSet candidates;  // passed but for the neighbouring files, and with company there
};

PhaseScore sumOf(SquareSet squares, const PhaseSquareTable& table) {
  PhaseScore sum;
  squares.forEach([&](unsigned index) { sum += table[index]; });
  return sum;
}

PhaseScore sumOf(SquareSet squares, const PhaseRankTable& table) {
  PhaseScore sum;
  squares.forEach([&](unsigned index) { sum += table[index / 8]; });
  return sum;
}

PhaseScore weaknessOf(const PawnKinds& pawns) {
  return sumOf(pawns.doubled, DOUBLED) + DOUBLED_OPEN * (pawns.doubled & pawns.open).count() +
         sumOf(pawns.isolated, ISOLATED) + ISOLATED_OPEN * (pawns.isolated & pawns.open).count() +
         sumOf(pawns.backward, BACKWARD) + BACKWARD_OPEN * (pawns.backward & pawns.open).count();
}

PhaseScore strengthOf(const PawnView& view, const PawnKinds& pawns) {
  PhaseScore score = sumOf(view.own, PAWN_SQUARE) +
                     sumOf(pawns.defended & pawns.unopposed, DEFENDED_FREE) +
                     sumOf(pawns.passed, PASSED) + sumOf(pawns.passed & pawns.duo, PASSED_DUO) +
                     sumOf(pawns.passed & pawns.defended, PASSED_DEFENDED);
  pawns.candidates.forEach([&](unsigned index) {
    const SquareSet pawn = SquareSet::of(static_cast<int>(index));
    const SquareSet sentries = pawn.allAhead().beside() & view.enemy;
    if ((pawn.beside() & view.own).count() >= sentries.count()) score += CANDIDATE[index / 8];
  });
  return score;
}

// A small number for each king zone, in one word, so that adding is one instruction; each sum must
// stay within 8 bits.
using ZoneWord = std::uint32_t;
using ZoneSquareTable = std::array<ZoneWord, 64>;

template <typename Value>
consteval ZoneSquareTable packZones(const std::array<SquareTable, 3>& zones, Value value) {
  ZoneSquareTable table{};
  for (int index = 0; index < 64; ++index) {
    for (int zone = 0; zone < 3; ++zone) {
      table[index] |= static_cast<ZoneWord>(value(zones[zone][index])) << 8 * zone;
    }
  }
  return table;
}
constexpr ZoneSquareTable SHELTER_WORDS = packZones(SHELTER, [](int value) { return value; });
constexpr ZoneSquareTable STORM_WORDS = packZones(STORM, [](int value) { return value; });
constexpr ZoneSquareTable STORM_ZONES =
    packZones(STORM, [](int value) { return value != 0 ? 1 : 0; });

ZoneWord sumOf(SquareSet squares, const ZoneSquareTable& table) {
  ZoneWord sum = 0;
  squares.forEach([&](unsigned index) { sum += table[index]; });
  return sum;
}

ZoneWord shelterOf(const PawnView& view) {
  return sumOf(view.own, SHELTER_WORDS);
}

// A pawn that storms a zone counts one more there when it is in touch with the enemy or with
// company, one less when it is stopped alone.
ZoneWord stormOf(const PawnView& view) {
  const SquareSet attacking = view.own & view.enemy.behind().beside();
  const SquareSet stopped = view.own & view.all().behind() & ~attacking;
  const SquareSet together = stopped & view.own.beside();
  return sumOf(view.own, STORM_WORDS) + sumOf(attacking | together, STORM_ZONES) -
         sumOf(stopped & ~together, STORM_ZONES);
}

void setCover(ZoneWord shelter, ZoneWord storm, PawnSideInfo& info) {
  for (std::int8_t& cover : info.cover) {
    cover = static_cast<std::int8_t>((shelter & 0xff) - (storm & 0xff));
    shelter >>= 8;
    storm >>= 8;
  }
}

// A rook wants a file without own pawns, and without any while there are not too many of them.
void setRooksOnFiles(PawnEntry& entry) {
  const unsigned open = entry.sides[WHITE].filesWithoutPawns & entry.sides[BLACK].filesWithoutPawns;
  const int onOpen = ROOK_ON_OPEN_FILE[std::popcount(open)];
  for (PawnSideInfo& side : entry.sides) {
    for (int file = 0; file < 8; ++file) {
      const int onFree = (open >> file & 1) != 0 ? onOpen : ROOK_ON_HALF_OPEN_FILE;
      side.rookOnFile[file] = static_cast<std::int8_t>(side.hasPawnOn(file) ? 0 : onFree);
    }
  }
}

PhaseScore pawnStructure(const Board& board, const PawnView& view, Color color,
                         PawnSideInfo& info) {
  const PawnKinds pawns(view);
  info.filesWithoutPawns = static_cast<std::uint8_t>(~view.own.files());
  info.lightSquarePawns =
      static_cast<std::uint8_t>((board.men(color, PAWN) & LIGHT_SQUARES).count());
  info.passedFiles = pawns.passed.files();
  info.passedCount = 0;
  if (!pawns.passed.empty()) {
    board.forEach(color, PAWN, [&](Piece, Square square) {
      if (!pawns.passed.contains(tableIndex(square, color))) return;
      info.passed[info.passedCount++] = static_cast<std::uint8_t>(square.number());
    });
  }
  return strengthOf(view, pawns) + weaknessOf(pawns);
}

}  // namespace

PhaseScore pawnStructure(const Board& board, Color color, PawnSideInfo& info) {
  return pawnStructure(board, viewPawns(board, color), color, info);
}

void evaluatePawns(const Board& board, PawnEntry& entry) {
  const PawnView whiteView = viewPawns(board, WHITE);
  const PawnView blackView = {whiteView.enemy.flipped(), whiteView.own.flipped()};
  const PhaseScore white = pawnStructure(board, whiteView, WHITE, entry.sides[WHITE]);
  const PhaseScore black = pawnStructure(board, blackView, BLACK, entry.sides[BLACK]);
  entry.middlegame = static_cast<std::int16_t>(white.middlegame() - black.middlegame());
  entry.endgame = static_cast<std::int16_t>(white.endgame() - black.endgame());
  setCover(shelterOf(whiteView), stormOf(blackView), entry.sides[WHITE]);
  setCover(shelterOf(blackView), stormOf(whiteView), entry.sides[BLACK]);
  setRooksOnFiles(entry);
}

}  // namespace ombrin
