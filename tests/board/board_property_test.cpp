// What must hold in every position, tried on random games.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <tuple>
#include <vector>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/notation.h"
#include "board/plain_notation.h"
#include "board/self_check.h"
#include "support/random_games.h"

namespace ombrin {
namespace {

// All that a position consists of, histories aside.
auto stateOf(const Board& board) {
  return std::tuple(board.squares, board.pieceSquare, board.byColor, board.byType, board.hash,
                    board.phash, board.side, board.ply, board.WhiteMaterial, board.BlackMaterial,
                    board.lastIrreversible, board.rights, board.epSquare, board.promotedCount,
                    board.rootMove);
}

// The moves that `write(out)` writes, given room for them; it returns their end.
template <typename Writer>
MoveList written(Writer&& write) {
  MoveList moves;
  moves.append(write);
  return moves;
}

std::set<std::uint32_t> identities(const MoveList& moves) {
  std::set<std::uint32_t> words;
  for (const Move move : moves) words.insert(move.identity().word());
  return words;
}

void expectConsistent(const Board& board) {
  checkBoard(board, "property", board.lastMove());
  EXPECT_EQ(board.phash, board.computePawnHash());
  std::array<SquareSet, 2> byColor;
  std::array<SquareSet, 8> byType;
  for (int index = 0; index < 256; ++index) {
    const Square square(index - 64);
    const Piece piece = board.squares[index];
    if (!square.isOnBoard()) {
      EXPECT_EQ(piece, OFF_BOARD);
    } else if (!piece.isEmpty()) {
      EXPECT_EQ(board.squareOf(piece), square);
      byColor[piece.color()] |= SquareSet::of(square);
      byType[piece.type()] |= SquareSet::of(square);
    }
  }
  EXPECT_TRUE(board.byColor == byColor && board.byType == byType) << writeFen(board);
}

TEST(MakeMove, KeepsEverythingConsistentAndUnmakeRestoresIt) {
  forRandomPositions(4, 80, [](Board& board) {
    const auto before = stateOf(board);
    const SavedState saved = board.save();
    const MoveList legal = legalMoves(board);
    for (const Move move : pseudoLegalMoves(board, board.lastMove())) {
      const bool isReversible = move.isQuiet() && !board.at(move.from()).isPawn();
      const Move made = makeMove(board, move);
      if (made) {
        expectConsistent(board);
        EXPECT_EQ(board.reversiblePlies() == 0, !isReversible) << moveToText(made);
        EXPECT_TRUE(made.isSameAs(move));
        EXPECT_FALSE(isAttacked(board, board.side, board.kingSquare(~board.side)))
            << moveToText(made);
        EXPECT_EQ(made.isCheck(), isAttacked(board, ~board.side, board.kingSquare(board.side)))
            << moveToText(made);
        unmakeMove(board, move, saved);
      }
      EXPECT_EQ(!made, !legal.contains(move));
      ASSERT_TRUE(before == stateOf(board)) << moveToText(move) << " " << writeFen(board);
    }
    if (!board.lastMove().isCheck()) {
      makeNullMove(board);
      expectConsistent(board);
      unmakeNullMove(board, saved);
      ASSERT_TRUE(before == stateOf(board)) << "null move";
    }
  });
}

TEST(IsMove, AcceptsWhatIsGeneratedAndNothingElse) {
  std::mt19937 random(7);
  forRandomPositions(2, 60, [&random](Board& board) {
    const std::set<std::uint32_t> known = identities(pseudoLegalMoves(board, board.lastMove()));
    const auto check = [&](std::uint32_t word) {
      const bool expected =
          (word & 0xc0000000) == 0 && known.contains(Move(word).identity().word());
      EXPECT_EQ(isMove(board, Move(word)), expected) << std::hex << word << " " << writeFen(board);
    };
    for (const std::uint32_t word : known) {
      check(word);
      for (int bit = 0; bit < 32; ++bit) check(word ^ (1U << bit));
    }
    for (int i = 0; i < 200; ++i) check(static_cast<std::uint32_t>(random()));
    for (int from = 0; from < 128; ++from) {
      const Square origin(from);
      if (!origin.isOnBoard() || !board.at(origin).isOf(board.side)) continue;
      for (int to = 0; to < 128; ++to) {
        if (Square(to).isOnBoard()) check(Move(origin, Square(to), board.at(Square(to))).word());
      }
    }
  });
}

TEST(StagedGenerators, TogetherYieldEveryLegalMoveOnce) {
  forRandomPositions(4, 80, [](Board& board) {
    if (board.lastMove().isCheck()) return;
    const std::set<std::uint32_t> legal = identities(legalMoves(board));
    MoveList staged = written([&](Move* out) { return genCaptures(board, out); });
    for (const Move move : staged) EXPECT_FALSE(move.isQuiet());
    staged.append([&](Move* out) { return genKingQuiet(board, genQuiet(board, out)); });
    std::vector<std::uint32_t> found;
    const SavedState saved = board.save();
    for (const Move move : staged) {
      if (uncovers(board, board.kingSquare(board.side), move.from(), move.to())) continue;
      if (makeMove(board, move).isNull()) continue;
      unmakeMove(board, move, saved);
      found.push_back(move.identity().word());
    }
    std::sort(found.begin(), found.end());
    EXPECT_TRUE(std::equal(found.begin(), found.end(), legal.begin(), legal.end()))
        << writeFen(board);
  });
}

// The quiet-check generators and givesCheck against what making the move says.
TEST(Checks, AreFoundBeforeTheMoveIsMade) {
  forRandomPositions(6, 80, [](Board& board) {
    if (board.lastMove().isCheck()) return;
    MoveList quietChecks = written([&](Move* out) { return genQuietChecks(board, out); });
    quietChecks.removeIf([](Move move) { return !move.givesDirectCheck(); });
    const std::set<std::uint32_t> checking = identities(quietChecks);
    const std::set<std::uint32_t> discovering =
        identities(written([&](Move* out) { return genDiscoveredQuiet(board, out); }));
    const SavedState saved = board.save();
    const Square king = board.kingSquare(~board.side);
    for (const Move move : legalMoves(board)) {
      Move probed = move;
      const bool predicted = givesCheck(board, probed, king);
      const Move made = makeMove(board, move);
      unmakeMove(board, move, saved);
      if (move.isCastling() || move.isEnPassant()) continue;
      if (!probed.isXray()) {
        EXPECT_EQ(predicted, made.isCheck()) << moveToText(made) << " " << writeFen(board);
      }
      const std::uint32_t word = move.identity().word();
      if (move.isQuiet()) {
        EXPECT_EQ(checking.contains(word), made.givesDirectCheck())
            << moveToText(made) << " " << writeFen(board);
        EXPECT_EQ(discovering.contains(word), made.givesDiscoveredCheck())
            << moveToText(made) << " " << writeFen(board);
      }
    }
  });
}

// Every way of writing every legal move, and every way of getting it slightly wrong.
TEST(Notation, ReadsBackEveryLegalMoveInEveryForm) {
  int plain = 0;
  int all = 0;
  const auto expectPlainReaderToAgree = [&](Board& board, const std::string& text) {
    ++all;
    const Move move = findPlainMove(board, text);
    if (!move) return;
    ++plain;
    ASSERT_TRUE(parseMove(board, text).isSameAs(move)) << text << " " << writeFen(board);
  };
  testing::internal::CaptureStderr();  // ambiguous moves are reported
  forRandomPositions(3, 60, [&](Board& board) {
    const MoveList legal = legalMoves(board);
    const SavedState saved = board.save();
    for (const Move move : legal) {
      const Move made = makeMove(board, move);
      unmakeMove(board, move, saved);
      const std::string algebraic = algebraicText(board, move, legal);
      std::string sloppy = moveToCoordinates(move);
      if (sloppy.size() > 4) sloppy[4] = static_cast<char>(std::tolower(sloppy[4]));
      for (const std::string& text :
           {moveToText(made), moveToCoordinates(move), sloppy, algebraic}) {
        EXPECT_EQ(parseMove(board, text), made) << text << " " << writeFen(board);
      }
      const Square to = Square(static_cast<int>(move.to().number() * 5 + 1) & 0x77);
      expectPlainReaderToAgree(board, algebraic + "+!?");
      expectPlainReaderToAgree(board,
                               algebraic.substr(0, 1) + algebraic.substr(algebraic.size() - 2));
      for (const char* piece : {"", "N", "B", "R", "Q", "K", "bx", "ax", "Nb", "R1", "Qh4"}) {
        expectPlainReaderToAgree(board, piece + to.text());
      }
    }
  });
  testing::internal::GetCapturedStderr();
  EXPECT_GT(plain, all / 20);
}

TEST(Fen, WhatIsWrittenIsReadBack) {
  forRandomPositions(3, 80, [](Board& board) {
    Board copy;
    ASSERT_TRUE(setFen(copy, writeFen(board)));
    EXPECT_EQ(copy.hash, board.hash);
    EXPECT_EQ(copy.phash, board.phash);
    EXPECT_EQ(copy.side, board.side);
    EXPECT_EQ(copy.lastMove().isCheck(), board.lastMove().isCheck());
    EXPECT_EQ(copy.lastMove().isDoubleCheck(), board.lastMove().isDoubleCheck());
    EXPECT_EQ(legalMoves(copy).size(), legalMoves(board).size()) << writeFen(board);
  });
}

TEST(Board, CopiesAndCompactsWithoutChangingThePosition) {
  forRandomPositions(2, 80, [](Board& board) {
    Board copy;
    copy.copyFrom(board);
    EXPECT_TRUE(stateOf(copy) == stateOf(board));
    EXPECT_EQ(copy.lastMove(), board.lastMove());
    copy.compactPieces();
    expectConsistent(copy);
    for (const Color color : {WHITE, BLACK}) {
      for (const PieceType type : PIECE_TYPES) {
        // No gaps, and the order of the living kept.
        std::vector<Square> before;
        std::vector<Square> after;
        board.forEach(color, type, [&](Piece, Square square) { before.push_back(square); });
        copy.forEach(color, type, [&](Piece, Square square) { after.push_back(square); });
        EXPECT_EQ(before, after);
        const int first = Piece(color, slotRun(type).first).index();
        EXPECT_EQ(copy.pieceSquare[first + static_cast<int>(after.size())], Board::FREE);
      }
    }
  });
}

TEST(See, LeavesTheBoardAloneAndNeverExceedsTheGain) {
  forRandomPositions(3, 80, [](Board& board) {
    const auto before = stateOf(board);
    for (const Move move : legalMoves(board)) {
      const int gain = gainOf(move);
      const int value = see(board, board.side, move);
      EXPECT_TRUE(value == gain || value < 0) << moveToText(move);
      const int atRisk = move.promotion() == QUEEN ? 10 : board.at(move.from()).value();
      EXPECT_GE(value, gain - atRisk);
      EXPECT_EQ(losesMaterial(board, board.side, move), value < 0) << moveToText(move);
    }
    EXPECT_TRUE(before == stateOf(board));
  });
}

}  // namespace
}  // namespace ombrin
