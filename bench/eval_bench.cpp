// The static evaluation. Times are per position: the positions after every legal move of a few
// middlegames, visited move by move, so that branch prediction fares as it does in a search. What
// making and unmaking the moves costs is measured on its own and to be subtracted.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "eval/evaluator.h"
#include "eval/king_safety.h"
#include "eval/passed_pawns.h"
#include "eval/pawn_structure.h"
#include "eval/piece_activity.h"

namespace ombrin {
namespace {

constexpr std::array<std::string_view, 6> MIDDLEGAMES = {
    "r1bq1rk1/pp2bppp/2n1pn2/2pp4/3P1B2/2PBPN2/PP1N1PPP/R2QK2R w KQ -",
    "r2q1rk1/1b2bppp/p1np1n2/1p2p3/4P3/1BN1BN2/PPP1QPPP/3R1RK1 b - -",
    "2rq1rk1/pp1bppbp/2np1np1/8/3NP3/1BN1BP2/PPPQ2PP/2KR3R b - -",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - -",
    "3r1rk1/p4ppp/1pn1p3/2p5/2Pq4/P2BP3/1PQ2PPP/R4RK1 w - -",
    "r1b2rk1/ppq1bppp/2n1p3/8/3P4/2PB1N2/P4PPP/1RBQR1K1 w - -",
};

struct Position {
  explicit Position(std::string_view fen) : evaluator(board) {
    setFen(board, fen);
    evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
    moves = legalMoves(board);
  }
  Board board;
  Evaluator evaluator;
  MoveList moves;
};

// Calls visit(Position&) after every move.
template <typename Visitor>
void visitChildren(benchmark::State& state, Visitor visit) {
  std::vector<std::unique_ptr<Position>> positions;
  for (const std::string_view fen : MIDDLEGAMES) {
    positions.push_back(std::make_unique<Position>(fen));
  }
  std::int64_t visited = 0;
  for (auto _ : state) {
    for (const std::unique_ptr<Position>& position : positions) {
      const SavedState saved = position->board.save();
      for (const Move move : position->moves) {
        makeMove(position->board, move);
        benchmark::DoNotOptimize(visit(*position));
        unmakeMove(position->board, move, saved);
      }
      visited += static_cast<std::int64_t>(position->moves.size());
    }
  }
  state.counters["per_position"] = benchmark::Counter(
      static_cast<double>(visited), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void visitOnly(benchmark::State& state) {
  visitChildren(state, [](Position& position) { return position.board.hash; });
}
BENCHMARK(visitOnly);

// With the pawn hash, as in play.
void evaluateCacheOff(benchmark::State& state) {
  visitChildren(state, [](Position& position) { return position.evaluator.evaluateUncached(); });
}
BENCHMARK(evaluateCacheOff);

void evaluatePawnHashOff(benchmark::State& state) {
  visitChildren(state, [](Position& position) {
    Evaluator& evaluator = position.evaluator;
    evaluator.pawnHash().slot(position.board.phash).key ^= 1;  // not to be found again
    return evaluator.evaluateUncached();
  });
}
BENCHMARK(evaluatePawnHashOff);

void evaluateCacheOn(benchmark::State& state) {
  visitChildren(state, [](Position& position) { return position.evaluator.evaluate(); });
}
BENCHMARK(evaluateCacheOn);

void pawnScoreHashHit(benchmark::State& state) {
  visitChildren(state, [](Position& position) { return position.evaluator.pawnScore(); });
}
BENCHMARK(pawnScoreHashHit);

void kingSafetyOfBoth(benchmark::State& state) {
  visitChildren(state, [](Position& position) {
    position.evaluator.pawnScore();
    const PawnEntry& entry = position.evaluator.pawnEntry();
    constexpr PieceActivity ATTACKERS{.worth = 0, .force = 8, .kingAttack = 80};
    return kingSafety(position.board, entry, WHITE, ATTACKERS) -
           kingSafety(position.board, entry, BLACK, ATTACKERS);
  });
}
BENCHMARK(kingSafetyOfBoth);

// And their attack on the kings.
void pieceActivityOfBoth(benchmark::State& state) {
  visitChildren(state, [](Position& position) {
    position.evaluator.pawnScore();
    const PawnEntry& entry = position.evaluator.pawnEntry();
    const auto [white, black] = pieceActivity(position.board, entry, {8, 8});
    return white.worth - black.worth + white.kingAttack - black.kingAttack;
  });
}
BENCHMARK(pieceActivityOfBoth);

void pawnEntryAnew(benchmark::State& state) {
  visitChildren(state, [](Position& position) {
    PawnEntry entry;
    evaluatePawns(position.board, entry);
    return entry.middlegame;
  });
}
BENCHMARK(pawnEntryAnew);

// Four passed pawns, two of them blocked.
void passedPawnsOfBoth(benchmark::State& state) {
  Position position("3r2k1/5ppp/pPn5/P7/4p3/2NpBP2/6PP/2R3K1 w - -");
  position.evaluator.pawnScore();
  const PawnEntry& entry = position.evaluator.pawnEntry();
  for (auto _ : state) {
    benchmark::DoNotOptimize(passedPawns(position.board, entry, WHITE) -
                             passedPawns(position.board, entry, BLACK));
  }
}
BENCHMARK(passedPawnsOfBoth);

}  // namespace
}  // namespace ombrin
