#include "verifier.h"

#include <bit>
#include <mutex>
#include <vector>

#include "grid.h"
#include "moves.h"
#include "outcome.h"
#include "parallel.h"

namespace bitbases {

namespace {

constexpr std::uint64_t GRAIN = 1024;  // words

// Of the positions of one frame: those that may arise, and of these those won and lost for the side
// to move.
struct Sets {
  Squares legal = 0;
  Squares won = 0;
  Squares lost = 0;
};

// The positions of a frame in which the side to move has a move, and in which it has one that wins,
// or does not lose.
struct Outlook {
  Squares moves = 0;
  Squares wins = 0;
  Squares saves = 0;

  void add(const Outlook& more, Squares mask = ~Squares{0}) {
    moves |= more.moves & mask;
    wins |= more.wins & mask;
    saves |= more.saves & mask;
  }
};

// By a move to the positions given.
Outlook outlookTo(const Sets& theirs) {
  return {theirs.legal, theirs.lost, theirs.legal & ~theirs.won};
}

Squares way(Square from, Square to) {
  return geometry_tables::BETWEEN[from][to];
}

// The squares beside those of a set.
Squares beside(Squares squares) {
  Squares all = 0;
  while (squares != 0) all |= kingSteps(popSquare(squares));
  return all;
}

Squares menOf(const Position& frame, Color color) {
  Squares men = 0;
  for (const Man& man : frame.men()) {
    if (man.color == color) men |= bitOf(man.square);
  }
  return men;
}

// Are the side's moves neither promotions nor such that could be answered en passant?
bool isPlain(const Position& frame, Color side) {
  bool hasEnemyPawns = false;
  for (const Man& man : frame.men()) {
    if (man.type == PAWN && man.color != side) hasEnemyPawns = true;
  }
  for (const Man& man : frame.men()) {
    if (man.type != PAWN || man.color != side) continue;
    const int rank = relativeRank(side, man.square);
    if (rank == 6 || (rank == 1 && hasEnemyPawns)) return false;
  }
  return true;
}

}  // namespace

// The values of all positions of one material, canonical or not, as they are looked up.
class Verifier::Values {
 public:
  Values(const Material& material, const TableSet& tables, int threads) : grid_(material) {
    for (auto& sides : sets_) sides.resize(grid_.words());
    forRanges(grid_.words(), GRAIN, threads, [&](std::uint64_t begin, std::uint64_t end) {
      for (auto word = static_cast<std::uint32_t>(begin); word < end; ++word) fill(word, tables);
    });
  }

  const Grid& grid() const { return grid_; }
  const Sets& at(Color side, std::uint32_t word) const { return sets_[side][word]; }

  // Men sorted.
  Sets at(const Position& frame, Color side) const {
    const Grid::Place place = grid_.find(frame);
    const Sets& kept = sets_[side][place.word];
    if (place.symmetry.isNone()) return kept;
    const auto turn = [&](Squares squares) { return undone(place.symmetry, squares); };
    return {turn(kept.legal), turn(kept.won), turn(kept.lost)};
  }

  Value at(const Position& position) const {
    const Grid::Place place = grid_.find(position);
    const Sets& kept = sets_[position.side][place.word];
    const Squares king = bitOf(place.symmetry(position.king[1]));
    return (kept.won & king) != 0 ? WIN : (kept.lost & king) != 0 ? LOSS : DRAW;
  }

 private:
  void fill(std::uint32_t word, const TableSet& tables) {
    Position position = grid_.frame(word);
    const Squares taken = bitOf(position.king[0]) | menOf(position, 0) | menOf(position, 1);
    if (std::popcount(taken) != position.count + 1) return;
    Squares squares = ~taken;
    while (squares != 0) {
      position.king[1] = popSquare(squares);
      const Squares king = bitOf(position.king[1]);
      for (const Color side : {0, 1}) {
        position.side = side;
        if (!isLegal(position)) continue;
        Sets& sets = sets_[side][word];
        sets.legal |= king;
        // What is not held counts as drawn, and will be found to be wrong.
        const Value value = tables.value(position).value_or(DRAW);
        if (value == WIN) sets.won |= king;
        if (value == LOSS) sets.lost |= king;
      }
    }
  }

  Grid grid_;
  std::array<std::vector<Sets>, 2> sets_;
};

class Verifier::Checker {
 public:
  Checker(const TableSet& tables, const Values& values,
          const std::array<const Values*, MAX_MEN>& captured)
      : tables_(tables), values_(values), captured_(captured) {}

  // The positions of a word that have not the value that their moves give them.
  Squares wrong(std::uint32_t word, Color side, Squares wanted) const {
    const Sets& kept = values_.at(side, word);
    wanted &= kept.legal;
    if (wanted == 0) return 0;
    const Position frame = values_.grid().frame(word);
    if (!isPlain(frame, side)) return wrongAlone(frame, side, wanted);
    Outlook outlook;
    addKingMoves(outlook, frame, side);
    for (int slot = 0; slot < frame.count; ++slot) {
      if (frame.slots[slot].color == side) addMoves(outlook, frame, side, slot);
    }
    const Squares wrong = (kept.won ^ outlook.wins) | (kept.lost ^ ~outlook.saves);
    return (wrong & wanted & outlook.moves) | wrongAlone(frame, side, wanted & ~outlook.moves);
  }

 private:
  // The same, one position after the other.
  Squares wrongAlone(Position position, Color side, Squares wanted) const {
    Squares wrong = 0;
    position.side = side;
    while (wanted != 0) {
      position.king[1] = popSquare(wanted);
      if (values_.at(position) != expectedValue(position)) wrong |= bitOf(position.king[1]);
    }
    return wrong;
  }

  Value expectedValue(const Position& position) const {
    const MoveList list = legalMoves(position);
    if (list.moves().empty()) return isInCheck(position, position.side) ? LOSS : DRAW;
    Value best = LOSS;
    for (const Move& move : list.moves()) {
      best = better(best, valueBehind(position, move));
      if (best == WIN) break;
    }
    return best;
  }

  Value valueBehind(const Position& position, const Move& move) const {
    const Position next = after(position, move);
    if (!move.isQuiet()) return negated(tables_.value(next).value_or(DRAW));
    const Value quiet = values_.at(next);
    if (!move.isDoubleStep) return negated(quiet);
    return negated(withEnPassant(next, quiet, enPassantValue(tables_, next, move.slot)));
  }

  // The positions behind a move to the square, on which an enemy man may stand.
  Sets behind(Position next, Color side, Square to) const {
    for (int slot = 0; slot < next.count; ++slot) {
      if (next.slots[slot].color == side || next.slots[slot].square != to) continue;
      next.remove(slot);
      return captured_[slot]->at(next, 1 - side);
    }
    return values_.at(next, 1 - side);
  }

  void addKingMoves(Outlook& outlook, const Position& frame, Color side) const {
    if (side == 0) {
      Squares targets = kingSteps(frame.king[0]) & ~menOf(frame, 0);
      Position next = frame;
      while (targets != 0) {
        next.king[0] = popSquare(targets);
        outlook.add(outlookTo(behind(next, 0, next.king[0])));
      }
      return;
    }
    // To one of the squares of `targets`.
    const auto addSteps = [&outlook](const Outlook& there, Squares targets) {
      outlook.add({beside(there.moves & targets), beside(there.wins & targets),
                   beside(there.saves & targets)});
    };
    const Squares enemies = menOf(frame, 0);
    addSteps(outlookTo(values_.at(frame, 0)), ~enemies);
    Squares targets = enemies;
    while (targets != 0) {
      const Square to = popSquare(targets);
      addSteps(outlookTo(behind(frame, 1, to)), bitOf(to));
    }
  }

  void addMoves(Outlook& outlook, const Position& frame, Color side, int slot) const {
    const Man& man = frame.slots[slot];
    const Squares others = bitOf(frame.king[0]) | menOf(frame, 0) | menOf(frame, 1);
    Squares targets = attacks(man, others);
    targets &= man.type == PAWN ? menOf(frame, 1 - side) : ~menOf(frame, side);
    targets &= ~bitOf(frame.king[0]);
    if (man.type == PAWN) {
      const Square one = man.square + upOf(side);
      if ((others & bitOf(one)) == 0) {
        targets |= bitOf(one);
        const Square two = one + upOf(side);
        if (relativeRank(side, man.square) == 1) targets |= bitOf(two) & ~others;
      }
    }
    Position next = frame;
    while (targets != 0) {
      const Square to = popSquare(targets);
      next.slots[slot].square = static_cast<std::uint8_t>(to);
      outlook.add(outlookTo(behind(next, side, to)), ~way(man.square, to));
    }
  }

  const TableSet& tables_;
  const Values& values_;
  std::array<const Values*, MAX_MEN> captured_;
};

Verifier::Verifier(const TableSet& tables, int threads) : tables_(tables), threads_(threads) {}
Verifier::~Verifier() = default;

const Verifier::Values& Verifier::capturedTo(const Position& sorted) {
  const Material material(sorted);
  auto& values = values_[material.number()];
  if (!values) values = std::make_unique<const Values>(material, tables_, threads_);
  return *values;
}

Totals Verifier::verify(const Material& material) {
  std::array<const Values*, MAX_MEN> captured{};
  for (int slot = 0; slot < material.pattern().count; ++slot) {
    Position rest = material.pattern();
    rest.remove(slot);
    captured[slot] = &capturedTo(rest);
  }
  const Values values(material, tables_, threads_);
  const Checker checker(tables_, values, captured);
  Totals totals;
  std::mutex adding;
  forRanges(values.grid().words(), GRAIN, threads_, [&](std::uint64_t begin, std::uint64_t end) {
    Totals part;
    for (auto word = static_cast<std::uint32_t>(begin); word < end; ++word) {
      const Squares counted = values.grid().counted(word);
      for (const Color side : {0, 1}) {
        const auto [legal, won, lost] = values.at(side, word);
        const auto count = [counted](Squares squares) {
          return static_cast<std::uint64_t>(std::popcount(squares & counted));
        };
        part.won[side] += count(won);
        part.lost[side] += count(lost);
        part.drawn[side] += count(legal & ~won & ~lost);
        part.wrong += count(checker.wrong(word, side, counted));
      }
    }
    const std::scoped_lock lock(adding);
    for (const Color side : {0, 1}) {
      totals.won[side] += part.won[side];
      totals.drawn[side] += part.drawn[side];
      totals.lost[side] += part.lost[side];
    }
    totals.wrong += part.wrong;
  });
  return totals;
}

}  // namespace bitbases
