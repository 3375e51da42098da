// Endings of one piece against the bare king, solved the slow and obvious way: no symmetry, no
// retrograde steps, only the rules applied to every position until nothing changes.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tiny {

constexpr int ILLEGAL = 99999;

class Solver {
 public:
  // White has the piece: one of "QRP".
  explicit Solver(char piece);

  // 1 won, 0 drawn, -1 lost for the side to move (0 White); ILLEGAL when it cannot arise.
  int value(int side, int whiteKing, int blackKing, int square) const;
  // Of a pawn, what it may promote to and win: a queen and a rook.
  const std::vector<Solver>& promoted() const { return promoted_; }

 private:
  static int number(int side, int whiteKing, int blackKing, int square) {
    return ((side * 64 + whiteKing) * 64 + blackKing) * 64 + square;
  }
  bool attacks(int from, int to, int blocker) const;
  bool isLegal(int side, int whiteKing, int blackKing, int square) const;
  bool isWonForWhite(int whiteKing, int blackKing, int square) const;
  bool isLostForBlack(int whiteKing, int blackKing, int square) const;
  bool winsByPieceMove(int whiteKing, int blackKing, int square) const;
  bool winsByPawnMove(int whiteKing, int blackKing, int square) const;

  char piece_;
  std::vector<Solver> promoted_;
  std::vector<int> values_;
};

}  // namespace tiny
