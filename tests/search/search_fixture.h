#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "board/board.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "egbb/bitbases.h"
#include "search/search_controller.h"
#include "search/search_state.h"
#include "search/tt.h"
#include "util/log.h"

namespace ombrin {

inline std::unique_ptr<Board> boardOf(const std::string& fen) {
  auto board = std::make_unique<Board>();
  EXPECT_TRUE(setFen(*board, fen)) << fen;
  return board;
}

// Plays moves given as text; the last one, as made.
inline Move play(Board& board, const std::vector<std::string>& moves) {
  Move made;
  for (const std::string& text : moves) {
    made = parseMove(board, text);
    EXPECT_TRUE(made) << text;
    board.makeRoom();
    makeMove(board, made);
  }
  return made;
}

// Keeps the log silent.
struct Silence {
  Silence() { logFile = nullptr; }
};

// Collects the log while it lives.
class LogCapture {
 public:
  LogCapture() : stream_(open_memstream(&text_, &size_)) { logFile = stream_; }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture() {
    logFile = nullptr;
    std::fclose(stream_);
    std::free(text_);  // NOLINT(cppcoreguidelines-no-malloc): open_memstream's
  }
  std::string text() {
    std::fflush(stream_);
    return {text_, size_};
  }
  bool has(const std::string& part) { return text().find(part) != std::string::npos; }

 private:
  char* text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* stream_;
};

// What every search needs.
struct SearchParts : Silence {
  Tt tt{1024};
  Bitbases bitbases;
};

// A main search thread that is used without a controller.
struct TestThread : SearchParts {
  TestThread() {
    thread.evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
    state.clock.start({.infinite = true});
  }

  SearchState state{tt, bitbases};
  SearchThread& thread = state.mainThread();
  Board& board = thread.board;
};

// A search controller before it is booted.
struct UnbootedEngine : SearchParts {
  SearchController search{tt, bitbases};
};

struct TestEngine : UnbootedEngine {
  explicit TestEngine(int threads = 1) {
    search.setThreads(threads);
    search.boot();
  }

  // Searches to that depth and no further, on this thread. In a game, a search ends when there is
  // no more to find.
  SearchReport searchTo(int depth, const Board& board, bool inGame = false) {
    SearchObserver observer;
    search.search(board, {.depth = depth, .infinite = !inGame}, observer);
    return search.report();
  }
};

inline const std::vector<std::string> MIDDLEGAMES = {
    "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 0 8",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
    "2r3k1/pp3ppp/2n1b3/3pP3/3P4/1P2BN2/P4PPP/2R3K1 b - - 0 22",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
    "4rrk1/pp1n3p/3q2pQ/2p1pb2/2PP4/2P3N1/P2B2PP/4RRK1 b - - 7 19",
};

}  // namespace ombrin
