// The static evaluation. Counts are per position, over a few middlegame positions taken in turn.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string_view>

#include "board/fen.h"
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
    evaluator.pawnScore();
  }
  Board board;
  Evaluator evaluator;
};

// Runs evaluate(Position&) on one position after the other.
template <typename Function>
void runOnMiddlegames(benchmark::State& state, Function evaluate) {
  std::array<std::unique_ptr<Position>, MIDDLEGAMES.size()> positions;
  for (std::size_t n = 0; n < positions.size(); ++n) {
    positions[n] = std::make_unique<Position>(MIDDLEGAMES[n]);
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(evaluate(*positions[next]));
    next = next + 1 < positions.size() ? next + 1 : 0;
  }
}

void evaluateCacheOff(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) { return position.evaluator.evaluateUncached(); });
}
BENCHMARK(evaluateCacheOff);

void evaluateCacheOn(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) { return position.evaluator.evaluate(); });
}
BENCHMARK(evaluateCacheOn);

void kingSafetyOfBoth(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) {
    const PawnEntry& entry = position.evaluator.pawnEntry();
    return kingSafety(position.board, entry, WHITE) - kingSafety(position.board, entry, BLACK);
  });
}
BENCHMARK(kingSafetyOfBoth);

void pieceActivityOfBoth(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) {
    const PawnEntry& entry = position.evaluator.pawnEntry();
    return pieceActivity(position.board, entry, WHITE) -
           pieceActivity(position.board, entry, BLACK);
  });
}
BENCHMARK(pieceActivityOfBoth);

void pawnScoreHashHit(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) { return position.evaluator.pawnScore(); });
}
BENCHMARK(pawnScoreHashHit);

void evaluatePawnsAnew(benchmark::State& state) {
  runOnMiddlegames(state, [](Position& position) {
    PawnEntry entry;
    evaluatePawns(position.board, entry);
    return entry.middlegame;
  });
}
BENCHMARK(evaluatePawnsAnew);

void passedPawnsOfBoth(benchmark::State& state) {
  Position position("3r2k1/1p3ppp/pPn5/P1P1p3/4b3/2N1BP2/6PP/2R3K1 w - -");
  const PawnEntry& entry = position.evaluator.pawnEntry();
  for (auto _ : state) {
    benchmark::DoNotOptimize(passedPawns(position.board, entry, WHITE) -
                             passedPawns(position.board, entry, BLACK));
  }
}
BENCHMARK(passedPawnsOfBoth);

}  // namespace
}  // namespace ombrin
