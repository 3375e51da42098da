#include "game/game.h"

#include <algorithm>
#include <cassert>

#include "board/make_move.h"
#include "board/notation.h"

namespace ombrin {

FenResult Game::setUp(std::string_view fen) {
  FenResult result = setFen(draft_, fen);
  refused_ = !result;
  if (refused_) return result;
  board_.copyFrom(draft_);
  plies_.clear();
  compactions_.clear();
  ponderMove_ = NULL_MOVE;
  return result;
}

Move Game::play(Move move) {
  if (move.isNull()) return NULL_MOVE;
  board_.makeRoom();
  const Ply ply{board_.save(), board_.rootMove, board_.droppedPlies};
  const Move made = makeMove(board_, move);
  if (made.isNull()) return NULL_MOVE;
  board_.rootMove = made;
  plies_.push_back(ply);
  ponderMove_ = NULL_MOVE;
  return made;
}

bool Game::takeBack() {
  if (plies_.empty()) return false;
  if (!compactions_.empty() && compactions_.back().plies == plies_.size()) {
    board_.copyFrom(*compactions_.back().before);
    compactions_.pop_back();
  }
  if (board_.ply == 0) return false;
  unmake(board_, plies_.back());
  plies_.pop_back();
  ponderMove_ = NULL_MOVE;
  return true;
}

void Game::unmake(Board& board, Ply ply) {
  // The board has forgotten moves since; what it remembers now starts that much later.
  const std::uint32_t dropped = board.droppedPlies - ply.droppedPlies;
  ply.saved.lastIrreversible -=
      static_cast<std::uint16_t>(std::min<std::uint32_t>(ply.saved.lastIrreversible, dropped));
  unmakeMove(board, board.moveHistory[board.ply - 1], ply.saved);
  board.rootMove = ply.rootMove;
}

void Game::compactPieces() {
  ponderMove_ = NULL_MOVE;
  auto before = std::make_unique<Board>();
  before->copyFrom(board_);
  board_.compactPieces();
  if (before->pieceSquare == board_.pieceSquare) return;
  compactions_.push_back({plies_.size(), std::move(before)});
}

bool Game::playPonderMove(Move move) {
  if (play(move).isNull()) return false;
  ponderMove_ = move;
  return true;
}

Move Game::parseBeforePonderMove(std::string_view text) const {
  assert(!ponderMove_.isNull() && !plies_.empty());
  assert(compactions_.empty() || compactions_.back().plies < plies_.size());
  Board before;
  before.copyFrom(board_);
  unmake(before, plies_.back());
  return parseMove(before, text);
}

void Game::leaveBook() {
  bookExit_ = place();
}

std::optional<int> Game::movesOutOfBook() const {
  if (!hasLeftBook() || board_.gamePly() < bookExit_->ply) return std::nullopt;
  return static_cast<int>((board_.gamePly() - bookExit_->ply) / 2 + 1);
}

}  // namespace ombrin
