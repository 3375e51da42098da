// What must hold in every position, tried on random games.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/notation.h"
#include "board/self_check.h"
#include "board/zobrist.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

// All that a position consists of, histories aside.
struct Snapshot {
  explicit Snapshot(const Board& board)
      : squares(board.squares),
        pieceSquare(board.pieceSquare),
        byColor(board.byColor),
        byType(board.byType),
        keys{board.hash, board.phash},
        words{board.side,
              board.ply,
              board.WhiteMaterial.word(),
              board.BlackMaterial.word(),
              board.lastIrreversible,
              board.rights,
              board.epSquare,
              board.promotedCount,
              board.rootMove.word()} {}
  bool operator==(const Snapshot&) const = default;

  std::array<Piece, 256> squares;
  std::array<std::uint8_t, 192> pieceSquare;
  std::array<SquareSet, 2> byColor;
  std::array<SquareSet, 8> byType;
  std::array<std::uint64_t, 2> keys;
  std::array<std::uint32_t, 9> words;
};

std::set<std::uint32_t> identities(const Move* begin, const Move* end) {
  std::set<std::uint32_t> words;
  for (; begin != end; ++begin) words.insert(begin->identity().word());
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
    const Snapshot before(board);
    const SavedState saved = board.save();
    std::array<Move, MAX_MOVES> moves;
    const Move* end = genLegal(board, moves.data(), board.lastMove());
    EXPECT_TRUE(before == Snapshot(board)) << "generation";
    for (const Move* move = moves.data(); move != end; ++move) {
      const Move made = makeMove(board, *move);
      if (made) {
        expectConsistent(board);
        EXPECT_TRUE(made.isSameAs(*move));
        EXPECT_FALSE(isAttacked(board, board.side, board.kingSquare(~board.side)))
            << moveToText(made);
        EXPECT_EQ(made.isCheck(), isAttacked(board, ~board.side, board.kingSquare(board.side)))
            << moveToText(made);
        unmakeMove(board, *move, saved);
      } else {
        EXPECT_TRUE(move->isCastling() || move->isEnPassant());
      }
      ASSERT_TRUE(before == Snapshot(board)) << moveToText(*move) << " " << writeFen(board);
    }
    if (!board.lastMove().isCheck()) {
      makeNullMove(board);
      expectConsistent(board);
      unmakeNullMove(board, saved);
      ASSERT_TRUE(before == Snapshot(board)) << "null move";
    }
  });
}

TEST(IsMove, AcceptsWhatIsGeneratedAndNothingElse) {
  std::mt19937 random(7);
  forRandomPositions(2, 60, [&random](Board& board) {
    std::array<Move, MAX_MOVES> moves;
    Move* end = genLegal(board, moves.data(), board.lastMove());
    const std::set<std::uint32_t> known = identities(moves.data(), end);
    const auto check = [&](std::uint32_t word) {
      const bool expected = (word & 0xc0000000) == 0 && known.count(Move(word).identity().word());
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
    std::array<Move, MAX_MOVES> moves;
    const std::set<std::uint32_t> legal = identities(moves.data(), legalMoves(board, moves.data()));
    std::array<Move, MAX_MOVES> staged;
    const Move* end = genCaptures(board, staged.data());
    for (const Move* move = staged.data(); move != end; ++move) EXPECT_FALSE(move->isQuiet());
    end = genQuiet(board, const_cast<Move*>(end));
    end = genKingQuiet(board, const_cast<Move*>(end));
    std::vector<std::uint32_t> found;
    const SavedState saved = board.save();
    for (const Move* move = staged.data(); move != end; ++move) {
      if (uncovers(board, board.kingSquare(board.side), move->from(), move->to())) continue;
      if (makeMove(board, *move).isNull()) continue;
      unmakeMove(board, *move, saved);
      found.push_back(move->identity().word());
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
    std::array<Move, MAX_MOVES> checks;
    Move* end = genQuietChecks(board, checks.data());
    std::set<std::uint32_t> generated;
    for (const Move* move = checks.data(); move != end; ++move) {
      if (move->givesDirectCheck()) generated.insert(move->identity().word());
    }
    end = genDiscoveredQuiet(board, checks.data());
    const std::set<std::uint32_t> discovering = identities(checks.data(), end);

    std::array<Move, MAX_MOVES> moves;
    const Move* last = legalMoves(board, moves.data());
    const SavedState saved = board.save();
    const Square king = board.kingSquare(~board.side);
    for (const Move* move = moves.data(); move != last; ++move) {
      Move probed = *move;
      const bool predicted = givesCheck(board, probed, king) && !probed.isXray();
      const Move made = makeMove(board, *move);
      unmakeMove(board, *move, saved);
      if (!move->isCastling() && !move->isEnPassant() && !probed.isXray()) {
        EXPECT_EQ(predicted, made.isCheck()) << moveToText(made) << " " << writeFen(board);
      }
      const std::uint32_t word = move->identity().word();
      if (move->isQuiet() && !move->isCastling()) {
        EXPECT_EQ(generated.count(word) != 0, made.givesDirectCheck())
            << moveToText(made) << " " << writeFen(board);
        if (made.givesDiscoveredCheck()) {
          EXPECT_TRUE(discovering.count(word)) << writeFen(board);
        }
      }
    }
  });
}

// Standard algebraic notation, for reading back.
std::string toSan(Board& board, Move move, const Move* begin, const Move* end) {
  if (move.isCastling()) return moveToText(move.identity());
  const Piece piece = board.at(move.from());
  const std::string squares = moveToCoordinates(move);
  std::string text;
  if (piece.isPawn()) {
    if (move.isCapture()) text = squares.substr(0, 1) + "x";
  } else {
    text = static_cast<char>(std::toupper(piece.letter()));
    bool sameFile = false;
    bool sameRank = false;
    bool ambiguous = false;
    for (const Move* other = begin; other != end; ++other) {
      if (other->to() != move.to() || other->from() == move.from()) continue;
      if (board.at(other->from()).type() != piece.type()) continue;
      ambiguous = true;
      sameFile = sameFile || other->from().file() == move.from().file();
      sameRank = sameRank || other->from().rank() == move.from().rank();
    }
    if (ambiguous && (!sameFile || sameRank)) text += squares[0];
    if (ambiguous && sameFile) text += squares[1];
    if (move.isCapture()) text += 'x';
  }
  text += squares.substr(2, 2);
  if (move.isPromotion()) text += "=" + squares.substr(4);
  return text;
}

TEST(Notation, ReadsBackEveryLegalMoveInEveryForm) {
  forRandomPositions(3, 60, [](Board& board) {
    std::array<Move, MAX_MOVES> moves;
    const Move* end = legalMoves(board, moves.data());
    for (const Move* move = moves.data(); move != end; ++move) {
      const SavedState saved = board.save();
      const Move made = makeMove(board, *move);
      unmakeMove(board, *move, saved);
      std::string sloppy = moveToCoordinates(*move);
      if (sloppy.size() > 4) sloppy[4] = static_cast<char>(std::tolower(sloppy[4]));
      for (const std::string& text : {moveToText(made), moveToCoordinates(*move), sloppy,
                                      toSan(board, *move, moves.data(), end)}) {
        EXPECT_EQ(parseMove(board, text), made) << text << " " << writeFen(board);
      }
    }
  });
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
    std::array<Move, MAX_MOVES> moves;
    std::array<Move, MAX_MOVES> copied;
    EXPECT_EQ(legalMoves(board, moves.data()) - moves.data(),
              legalMoves(copy, copied.data()) - copied.data())
        << writeFen(board);
  });
}

TEST(Board, CopiesAndCompactsWithoutChangingThePosition) {
  forRandomPositions(2, 80, [](Board& board) {
    Board copy;
    copy.copyFrom(board);
    EXPECT_TRUE(Snapshot(copy) == Snapshot(board));
    EXPECT_EQ(copy.lastMove(), board.lastMove());
    copy.compactPieces();
    expectConsistent(copy);
    EXPECT_EQ(copy.hash, board.hash);
    for (const Color color : {WHITE, BLACK}) {
      for (const PieceType type : PIECE_TYPES) {
        // No gaps, and the order of the living kept.
        std::vector<int> before;
        std::vector<int> after;
        board.forEach(color, type, [&](Piece, Square s) { before.push_back(s.number()); });
        copy.forEach(color, type, [&](Piece, Square s) { after.push_back(s.number()); });
        EXPECT_EQ(before, after);
        const int first = Piece(color, slotRun(type).first).index();
        EXPECT_EQ(copy.pieceSquare[first + static_cast<int>(after.size())], Board::FREE);
      }
    }
  });
}

TEST(See, LeavesTheBoardAloneAndNeverExceedsTheGain) {
  forRandomPositions(3, 80, [](Board& board) {
    const Snapshot before(board);
    std::array<Move, MAX_MOVES> moves;
    const Move* end = legalMoves(board, moves.data());
    for (const Move* move = moves.data(); move != end; ++move) {
      const int gain = gainOf(*move);
      const int value = see(board, board.side, *move);
      EXPECT_TRUE(value == gain || value < 0) << moveToText(*move);
      const int atRisk = move->promotion() == QUEEN ? 10 : board.at(move->from()).value();
      EXPECT_GE(value, gain - atRisk);
      EXPECT_EQ(losesMaterial(board, board.side, *move), value < 0) << moveToText(*move);
    }
    EXPECT_TRUE(before == Snapshot(board));
  });
}

}  // namespace
}  // namespace ombrin
