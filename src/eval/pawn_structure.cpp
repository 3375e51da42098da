#include "eval/pawn_structure.h"

#include <array>
#include <bit>

#include "board/square_set.h"
#include "eval/square_table.h"

namespace ombrin {

namespace {

using PhaseRankTable = std::array<PhaseScore, 8>;

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

constexpr SquareTable DEFENDED_FREE =
    {  0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  0,  0,  0,  0,   0,
       0,  0,  0,  2,  2,  0,  0,   0,
       0,  2,  4,  5,  5,  4,  2,   0,
       1,  4,  6,  8,  8,  6,  4,   1};

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

constexpr PhaseSquareTable BACKWARD = join(  // counted half
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
     -10, -10, -10, -10, -10, -10, -10, -10});

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
  PawnView view;
  board.forEach(color, PAWN, [&](Piece, Square square) {
    view.own |= SquareSet::of(tableIndex(square, color));
  });
  board.forEach(~color, PAWN, [&](Piece, Square square) {
    view.enemy |= SquareSet::of(tableIndex(square, color));
  });
  return view;
}

// More own pawns beside `square` than enemy pawns two ranks ahead of those: the square can be
// taken and held with the help of the neighbours.
bool canAdvanceTo(const PawnView& view, SquareSet square) {
  const SquareSet helpers = square.behind().beside() & view.own;
  const SquareSet guards = square.ahead().beside() & view.enemy;
  return helpers.count() > guards.count();
}

// A pawn that no pawn defends, none can come to defend, and that cannot safely join its neighbours.
// Only for pawns with an own pawn on a neighbouring file.
bool isBackward(const PawnView& view, SquareSet pawn, bool onStart) {
  const SquareSet front = pawn.ahead();
  const bool frontIsFree = (front & view.all()).empty();
  if (frontIsFree && canAdvanceTo(view, front)) return false;
  const SquareSet second = front.ahead();
  if (onStart && frontIsFree && (second & view.all()).empty() && canAdvanceTo(view, second)) {
    return false;
  }
  for (const bool left : {true, false}) {
    const SquareSet beside = left ? pawn.left() : pawn.right();
    const SquareSet post = beside.behind();  // from where a neighbour would defend
    const SquareSet guard = left ? beside.left() : beside.right();
    if (!(post.behind() & view.own).empty() && (post & view.all()).empty() &&
        (guard & view.enemy).empty()) {
      return false;
    }
  }
  return true;
}

// What the rules ask about one pawn.
struct PawnFacts {
  PawnFacts(const PawnView& view, int index)
      : pawn(SquareSet::of(index)),
        neighbours(pawn.beside() & view.own),
        sentries(SquareSet::allAhead(index).beside() & view.enemy),
        isDefended(!(pawn.behind().beside() & view.own).empty()),
        isOpen((SquareSet::allAhead(index) & view.all()).empty()),
        isDoubled(!isDefended && !(SquareSet::allBehind(index) & view.all()).empty()),
        isIsolated((SquareSet::file(index & 7).beside() & view.own).empty()) {}
  bool isPassed() const { return isOpen && sentries.empty(); }

  SquareSet pawn;
  SquareSet neighbours;  // own pawns beside it
  SquareSet sentries;    // enemy pawns ahead of it on the neighbouring files
  bool isDefended;
  bool isOpen;     // no pawn ahead on its file
  bool isDoubled;  // undefended, with a pawn of either colour behind it
  bool isIsolated;
};

PhaseScore weaknessOf(const PawnView& view, const PawnFacts& facts, int index) {
  PhaseScore score;
  if (facts.isDoubled) {
    score += DOUBLED[index];
    if (facts.isOpen) score += DOUBLED_OPEN;
  }
  const int rank = index / 8;
  if (facts.isIsolated) {
    score += ISOLATED[rank];
    if (facts.isOpen) score += ISOLATED_OPEN;
  } else if (!facts.isDefended && isBackward(view, facts.pawn, rank == 1)) {
    const PhaseScore penalty = BACKWARD[index];
    score += {penalty.middlegame() / 2, penalty.endgame() / 2};
    if (facts.isOpen) score += BACKWARD_OPEN;
  }
  return score;
}

PhaseScore strengthOf(const PawnFacts& facts, int index) {
  PhaseScore score = PAWN_SQUARE[index];
  if (facts.isDefended && facts.sentries.empty()) score += {DEFENDED_FREE[index], 0};
  const int rank = index / 8;
  if (facts.isPassed()) {
    score += PASSED[index];
    if (!facts.neighbours.empty()) score += PASSED_DUO[rank];
    if (facts.isDefended) score += PASSED_DEFENDED[rank];
  } else if (facts.isOpen && !facts.isIsolated &&
             facts.neighbours.count() >= facts.sentries.count()) {
    score += CANDIDATE[rank];
  }
  return score;
}

// How much a pawn with that view adds to a storm, beside its square's value.
int stormContact(const PawnView& view, SquareSet pawn) {
  if (!(pawn.ahead().beside() & view.enemy).empty()) return 1;
  if ((pawn.ahead() & view.all()).empty()) return 0;
  return (pawn.beside() & view.own).empty() ? -1 : 1;
}

void shelterAndStorm(const Board& board, const PawnView& view, Color color, PawnEntry& entry) {
  std::array<std::int8_t, 3>& own = entry.sides[color].cover;
  std::array<std::int8_t, 3>& enemy = entry.sides[~color].cover;
  board.forEach(color, PAWN, [&](Piece, Square square) {
    const int index = tableIndex(square, color);
    const int contact = stormContact(view, SquareSet::of(index));
    for (int zone = 0; zone < 3; ++zone) {
      own[zone] = static_cast<std::int8_t>(own[zone] + SHELTER[zone][index]);
      const int value = STORM[zone][index];
      if (value != 0) enemy[zone] = static_cast<std::int8_t>(enemy[zone] - value - contact);
    }
  });
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
  info.filesWithoutPawns = 0xff;
  info.passedCount = 0;
  info.passedFiles = 0;
  info.lightSquarePawns = 0;
  PhaseScore score;
  board.forEach(color, PAWN, [&](Piece, Square square) {
    const auto fileBit = static_cast<std::uint8_t>(1 << square.file());
    info.filesWithoutPawns &= static_cast<std::uint8_t>(~fileBit);
    info.lightSquarePawns = static_cast<std::uint8_t>(info.lightSquarePawns + square.shade());

    const int index = tableIndex(square, color);
    const PawnFacts facts(view, index);
    score += strengthOf(facts, index);
    score += weaknessOf(view, facts, index);
    if (facts.isPassed()) {
      info.passed[info.passedCount++] = static_cast<std::uint8_t>(square.number());
      info.passedFiles |= fileBit;
    }
  });
  return score;
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
  entry.sides[WHITE].cover = entry.sides[BLACK].cover = {};
  shelterAndStorm(board, whiteView, WHITE, entry);
  shelterAndStorm(board, blackView, BLACK, entry);
  setRooksOnFiles(entry);
}

}  // namespace ombrin
