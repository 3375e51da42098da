#include "tiny_solver.h"

#include <cstdlib>

namespace tiny {

namespace {

constexpr int STEPS[8][2] = {{0, 1}, {1, 0}, {0, -1}, {-1, 0}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}};

// The square so many steps away, or -1.
int step(int from, const int (&direction)[2], int times = 1) {
  const int file = from % 8 + times * direction[0];
  const int rank = from / 8 + times * direction[1];
  return file < 0 || file > 7 || rank < 0 || rank > 7 ? -1 : file + 8 * rank;
}

bool touch(int a, int b) {
  return std::abs(a % 8 - b % 8) < 2 && std::abs(a / 8 - b / 8) < 2;
}

}  // namespace

Solver::Solver(char piece) : piece_(piece), values_(std::size_t{2} * 64 * 64 * 64) {
  if (piece == 'P') promoted_ = {Solver('Q'), Solver('R')};
  std::vector<int> open;
  for (int i = 0; i < static_cast<int>(values_.size()); ++i) {
    if (isLegal(i >> 18, i >> 12 & 63, i >> 6 & 63, i & 63)) {
      open.push_back(i);
    } else {
      values_[i] = ILLEGAL;
    }
  }
  for (bool isChanged = true; isChanged;) {
    std::vector<int> stillOpen;
    for (const int i : open) {
      const int whiteKing = i >> 12 & 63;
      const int blackKing = i >> 6 & 63;
      const int square = i & 63;
      if (i >> 18 == 0 && isWonForWhite(whiteKing, blackKing, square)) {
        values_[i] = 1;
      } else if (i >> 18 == 1 && isLostForBlack(whiteKing, blackKing, square)) {
        values_[i] = -1;
      } else {
        stillOpen.push_back(i);
      }
    }
    isChanged = stillOpen.size() < open.size();
    open = stillOpen;
  }
}

int Solver::value(int side, int whiteKing, int blackKing, int square) const {
  return values_[number(side, whiteKing, blackKing, square)];
}

bool Solver::attacks(int from, int to, int blocker) const {
  if (piece_ == 'P') return to / 8 == from / 8 + 1 && std::abs(to % 8 - from % 8) == 1;
  for (int d = 0; d < (piece_ == 'Q' ? 8 : 4); ++d) {
    for (int n = 1; n < 8; ++n) {
      const int reached = step(from, STEPS[d], n);
      if (reached == to) return true;
      if (reached < 0 || reached == blocker) break;
    }
  }
  return false;
}

bool Solver::isLegal(int side, int whiteKing, int blackKing, int square) const {
  if (touch(whiteKing, blackKing) || square == whiteKing || square == blackKing) return false;
  if (piece_ == 'P' && (square < 8 || square >= 56)) return false;
  return side == 1 || !attacks(square, blackKing, whiteKing);
}

bool Solver::isWonForWhite(int whiteKing, int blackKing, int square) const {
  for (const auto& direction : STEPS) {
    const int to = step(whiteKing, direction);
    if (to >= 0 && to != square && !touch(to, blackKing) && value(1, to, blackKing, square) == -1) {
      return true;
    }
  }
  return piece_ == 'P' ? winsByPawnMove(whiteKing, blackKing, square)
                       : winsByPieceMove(whiteKing, blackKing, square);
}

bool Solver::winsByPieceMove(int whiteKing, int blackKing, int square) const {
  for (int d = 0; d < (piece_ == 'Q' ? 8 : 4); ++d) {
    for (int n = 1; n < 8; ++n) {
      const int to = step(square, STEPS[d], n);
      if (to < 0 || to == whiteKing || to == blackKing) break;
      if (value(1, whiteKing, blackKing, to) == -1) return true;
    }
  }
  return false;
}

bool Solver::winsByPawnMove(int whiteKing, int blackKing, int square) const {
  for (int n = 1; n <= (square < 16 ? 2 : 1); ++n) {
    const int to = square + 8 * n;
    if (to == whiteKing || to == blackKing) return false;
    if (to < 56) {
      if (value(1, whiteKing, blackKing, to) == -1) return true;
      continue;
    }
    for (const Solver& promoted : promoted_) {
      if (promoted.value(1, whiteKing, blackKing, to) == -1) return true;
    }
  }
  return false;
}

bool Solver::isLostForBlack(int whiteKing, int blackKing, int square) const {
  bool canMove = false;
  for (const auto& direction : STEPS) {
    const int to = step(blackKing, direction);
    if (to < 0 || touch(to, whiteKing)) continue;
    if (to == square) return false;
    if (attacks(square, to, whiteKing)) continue;
    if (value(0, whiteKing, to, square) != 1) return false;
    canMove = true;
  }
  return canMove || attacks(square, blackKing, whiteKing);
}

}  // namespace tiny
