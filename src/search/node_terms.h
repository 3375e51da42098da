#pragma once

#include <cstdint>

#include "board/move.h"
#include "board/score.h"
#include "board/square.h"

namespace ombrin {

// What a node is expected to be: on the principal variation, one that fails high, or one that fails
// low. Children get the negated type.
enum NodeType : int { ALL_NODE = -1, PV_NODE = 0, CUT_NODE = 1 };

constexpr NodeType operator-(NodeType type) {
  return static_cast<NodeType>(-static_cast<int>(type));
}

// What a node knows that its moves are judged by. Threads that join in at a split node get a copy.
struct NodeTerms {
  Move lastMove;                 // the move that led to the node
  int ply = 0;                   // of the node
  int depth = 0;                 // of the node
  int newDepth = 0;              // of its children
  Score beta;                    // of the node
  Score futility = MATE;         // the most that a quiet move can be expected to reach
  bool mayReduce = false;        // are late moves searched with less depth?
  Square threatSquare{8};        // where the opponent threatens to move; off the board when unknown
  std::uint8_t passedFiles = 0;  // files with a passed pawn of the side to move

  bool inCheck() const { return lastMove.isCheck(); }
};

// What a node's moves have come to so far.
struct Verdict {
  Score alpha;
  Score best = -MATE;
  Move bestMove;
};

}  // namespace ombrin
