// Positions for properties: random games from varied starts.
#pragma once

#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "board/board.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"

namespace ombrin {

inline constexpr std::array<std::string_view, 12> VARIED_FENS = {
    START_FEN,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -",
    "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - -",
    "4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - -",
    "r3k2r/8/8/8/8/8/8/R3K2R b KQkq -",
    "8/8/8/2k5/3Pp3/8/8/3K4 b - d3",
    "8/k7/8/KPp4r/8/8/8/8 w - c6",
    "8/8/8/8/QQQQQ3/QQQQ4/7k/KN6 w - -",
    "6kq/5ppp/8/8/8/8/PPP5/QK6 b - -",
};

// Plays `games` random games of at most `plies` plies from every start and calls visit(Board&) for
// every position on the way. The visitor must leave the board as it was.
template <typename Visitor>
void forRandomPositions(int games, int plies, Visitor&& visit) {
  std::mt19937 random(20260);
  Board board;
  for (const std::string_view fen : VARIED_FENS) {
    for (int game = 0; game < games; ++game) {
      if (!setFen(board, fen)) throw std::logic_error("refused: " + std::string(fen));
      for (int ply = 0; ply < plies; ++ply) {
        visit(board);
        const MoveList moves = legalMoves(board);
        if (moves.empty()) break;
        const Move move = moves[random() % moves.size()];
        const SavedState saved = board.save();
        const Move made = makeMove(board, move);
        // A game's board remembers its moves with their check flags.
        unmakeMove(board, move, saved);
        makeMove(board, made);
      }
    }
  }
}

}  // namespace ombrin
