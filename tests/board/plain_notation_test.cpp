#include "board/plain_notation.h"

#include <gtest/gtest.h>

#include <string>

#include "board/notation.h"
#include "support/random_games.h"

namespace ombrin {
namespace {

// Every way of writing every legal move, and every way of getting it slightly wrong.
TEST(PlainNotation, AgreesWithTheFullReader) {
  int plain = 0;
  int all = 0;
  const auto check = [&](Board& board, const std::string& text) {
    ++all;
    const Move move = findPlainMove(board, text);
    if (!move) return;
    ++plain;
    const Move read = parseMove(board, text);
    ASSERT_TRUE(read.isSameAs(move)) << text << ' ' << moveToText(read) << ' ' << moveToText(move);
  };
  testing::internal::CaptureStderr();
  forRandomPositions(3, 80, [&](Board& board) {
    std::array<Move, MAX_MOVES> moves;
    const std::span legal(moves.data(), legalMoves(board, moves.data()));
    for (const Move move : legal) {
      const std::string text = algebraicText(board, move, legal);
      check(board, text);
      check(board, text + "+!?");
      check(board, text.substr(0, 1) + text.substr(text.size() - 2));
      const Square to = Square(static_cast<int>(move.to().number() * 5 + 1) & 0x77);
      const std::string square = {static_cast<char>('a' + to.file()),
                                  static_cast<char>('1' + to.rank())};
      for (const char* piece : {"", "N", "B", "R", "Q", "K", "bx", "ax", "Nb", "R1", "Qh4"}) {
        check(board, piece + square);
      }
    }
  });
  testing::internal::GetCapturedStderr();
  EXPECT_GT(plain, all / 20);
}

TEST(PlainNotation, ReadsMostMovesOfGames) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  for (const char* text : {"e4", "Nf3", "Nh3", "a3"}) EXPECT_TRUE(findPlainMove(board, text));
  for (const char* text : {"", "e5", "Ke2", "O-O", "Nd2", "e2e4", "Pe4", "e", "%", "Bf1"}) {
    EXPECT_FALSE(findPlainMove(board, text)) << text;
  }
}

}  // namespace
}  // namespace ombrin
