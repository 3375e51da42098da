#include "game/game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/notation.h"
#include "board/self_check.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

Move moveOf(const Game& game, const char* text) {
  return parseMove(game.board(), text);
}
Move playRandomMove(Game& game, std::mt19937& random) {
  const MoveList moves = legalMoves(game.board());
  if (moves.empty()) return NULL_MOVE;
  const std::string text = moveToCoordinates(moves[random() % moves.size()]);
  return game.play(parseMove(game.board(), text));
}

// All that a search would see of the game: the moves come in the order of the board's lists and
// name captured men by their places in them.
std::string sightOf(const Game& game) {
  const Board& board = game.board();
  checkBoard(board, "game", board.rootMove);
  std::string text = writeFen(board) + " after " + std::to_string(board.rootMove.word()) + "," +
                     std::to_string(board.lastMove().word()) + ":";
  for (const Move move : legalMoves(board)) text += " " + std::to_string(move.word());
  return text;
}

TEST(Game, TakesBackWhateverWasPlayed) {
  std::mt19937 random(17);
  Game game;
  for (const std::string_view fen : VARIED_FENS) {
    ASSERT_TRUE(game.setUp(fen));
    std::vector<std::string> sights;
    for (int step = 0; step < 400; ++step) {
      const unsigned choice = random() % 8;
      if (choice == 0) {
        game.compactPieces();
      } else if (choice < 6) {
        sights.push_back(sightOf(game));
        if (playRandomMove(game, random).isNull()) sights.pop_back();
      } else if (!sights.empty()) {
        ASSERT_TRUE(game.takeBack());
        ASSERT_EQ(sightOf(game), sights.back()) << fen;
        sights.pop_back();
      }
    }
    for (; !sights.empty(); sights.pop_back()) {
      ASSERT_TRUE(game.takeBack());
      ASSERT_EQ(sightOf(game), sights.back()) << fen;
    }
    EXPECT_FALSE(game.takeBack());
  }
}

TEST(Game, TakesBackAsFarAsTheBoardRemembers) {
  Game game;
  ASSERT_TRUE(game.setUp(START_FEN));
  std::vector<std::uint32_t> reversible;  // before each move
  const auto play = [&](const std::string& text) {
    reversible.push_back(game.board().reversiblePlies());
    ASSERT_FALSE(game.play(moveOf(game, text.c_str())).isNull()) << text;
  };
  for (const std::string file : {"a", "b", "c", "d", "e", "h"}) {
    play(file + "3");
    play(file + "6");
    for (int round = 0; round < 80; ++round) {
      for (const char* move : {"g1f3", "g8f6", "f3g1", "f6g8"}) play(move);
    }
    game.compactPieces();
  }
  const std::size_t played = reversible.size();
  for (; game.takeBack(); reversible.pop_back()) {
    const Board& board = game.board();
    ASSERT_EQ(board.gamePly() + 1, reversible.size());
    ASSERT_EQ(board.reversiblePlies(), std::min(reversible.back(), board.ply));
    ASSERT_EQ(board.hash, board.computeHash());
  }
  EXPECT_GE(played - reversible.size(), 512U);
}

TEST(Game, StaysAsItWasWhenSomethingIsRefused) {
  Game game;
  ASSERT_TRUE(game.setUp("r3k2r/8/8/8/8/8/5r2/4K2R w K -"));
  const std::string before = sightOf(game);
  EXPECT_FALSE(game.setUp("8/8/8/8/8/8/8/8 w - -"));
  EXPECT_TRUE(game.wasRefused());
  EXPECT_TRUE(game.play(Move(E1, G1, EMPTY, Move::CASTLING)).isNull());
  EXPECT_TRUE(game.play(NULL_MOVE).isNull());
  EXPECT_FALSE(game.takeBack());
  EXPECT_EQ(sightOf(game), before);
  EXPECT_TRUE(game.setUp(START_FEN));
  EXPECT_FALSE(game.wasRefused());
}

TEST(Game, APonderMoveIsPendingUntilTheGameGoesOn) {
  Game game;
  ASSERT_TRUE(game.setUp("4k3/8/8/3p4/4P3/8/8/4K3 w - -"));
  const std::string before = sightOf(game);
  EXPECT_FALSE(game.playPonderMove(NULL_MOVE));
  EXPECT_TRUE(game.ponderMove().isNull());
  const Move expected = moveOf(game, "e4d5");
  ASSERT_TRUE(game.playPonderMove(expected));
  EXPECT_TRUE(game.ponderMove().isSameAs(expected));
  EXPECT_TRUE(game.parseBeforePonderMove("exd5").isSameAs(expected));
  EXPECT_FALSE(game.parseBeforePonderMove("e5").isNull());
  EXPECT_TRUE(game.parseBeforePonderMove("Kd7").isNull());
  ASSERT_TRUE(game.takeBack());
  EXPECT_TRUE(game.ponderMove().isNull());
  EXPECT_EQ(sightOf(game), before);
  // Whatever else happens makes it a move like the others.
  const std::vector<void (*)(Game&)> ways = {
      [](Game& g) { g.confirmPonderMove(); },
      [](Game& g) { g.compactPieces(); },
      [](Game& g) { g.play(parseMove(g.board(), "e8d7")); },
  };
  for (const auto way : ways) {
    ASSERT_TRUE(game.setUp("4k3/8/8/3p4/4P3/8/8/4K3 w - -"));
    ASSERT_TRUE(game.playPonderMove(moveOf(game, "e4d5")));
    way(game);
    EXPECT_TRUE(game.ponderMove().isNull());
    while (game.takeBack()) continue;
    EXPECT_EQ(sightOf(game), before);
  }
}

TEST(Game, CountsOnesOwnMovesOutOfBook) {
  Game game;
  ASSERT_TRUE(game.setUp(START_FEN));
  EXPECT_EQ(game.movesOutOfBook(), std::nullopt);
  EXPECT_FALSE(game.isAtBookExit());
  for (const char* move : {"e4", "e5"}) game.play(moveOf(game, move));
  game.leaveBook();
  EXPECT_EQ(game.firstPlyOutOfBook(), 3U);
  EXPECT_TRUE(game.isAtBookExit());
  std::mt19937 random(1);
  for (const int count : {1, 1, 2, 2, 3}) {
    EXPECT_EQ(game.movesOutOfBook(), count);
    playRandomMove(game, random);
  }
  EXPECT_FALSE(game.isAtBookExit());
  ASSERT_TRUE(game.setUp(START_FEN));
  EXPECT_EQ(game.movesOutOfBook(), std::nullopt);
  EXPECT_TRUE(game.hasLeftBook());
  game.returnToBook();
  EXPECT_FALSE(game.hasLeftBook());
}

}  // namespace
}  // namespace ombrin
