#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "board/fen.h"
#include "eval/evaluator.h"

namespace ombrin {

// A board with an evaluator that has just met its position.
struct EvaluatedPosition {
  explicit EvaluatedPosition(std::string_view fen) : evaluator(board) {
    EXPECT_TRUE(setFen(board, fen)) << fen;
    evaluator.pawnHash().resize(PawnHash::FULL_SIZE);
    evaluator.pawnScore();
  }

  Board board;
  Evaluator evaluator;
};

}  // namespace ombrin
