#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "board/board.h"
#include "board/fen.h"

namespace ombrin {

// The game that is being played: the position now, the moves that led to it and how to take them
// back, a reply that the engine thinks about before it is played, and where the game left the
// opening book. Every front-end plays on the same one. One thread at a time: who shares a game
// guards it with a lock.
class Game {
 public:
  // A position of a game, told apart from the others of the same game.
  struct Place {
    std::uint64_t hash;
    Color side;
    std::uint32_t ply;
    friend bool operator==(const Place&, const Place&) = default;
  };

  Game() = default;
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  // Empty until the first set-up that succeeds.
  const Board& board() const { return board_; }
  Place place() const { return {board_.hash, board_.side, board_.gamePly()}; }

  // Begins a game at that position. When setFen refuses it, the game stays as it was, and
  // wasRefused() holds until the next set-up that succeeds.
  FenResult setUp(std::string_view fen);
  bool wasRefused() const { return refused_; }

  // Makes a move of the position that parseMove gave. Returns the word with its check flags; the
  // null move, and the game as it was, when it is null or not legal after all.
  Move play(Move move);
  // Takes the last move back, a pending ponder move for one. False when there is none, or when it
  // was so many moves ago that the board has forgotten it (Board::makeRoom).
  bool takeBack();
  // Closes the gaps that captured men left in the board's lists (Board::compactPieces). The men
  // keep their order and the position its keys, and moves can still be taken back.
  void compactPieces();

  // Plays the reply that is expected. It is pending until it turns out to be the one, is taken
  // back, or the game goes on in another way. False when it is no legal move.
  bool playPonderMove(Move move);
  // The pending one; null when there is none.
  Move ponderMove() const { return ponderMove_; }
  // It was the one, and is a move like the others now.
  void confirmPonderMove() { ponderMove_ = NULL_MOVE; }
  // parseMove in the position before the pending move, which there must be.
  Move parseBeforePonderMove(std::string_view text) const;

  // The position is the first one that the engine has to search by itself: the book is not asked
  // again in this game, and the clock gives the first moves on one's own more time.
  void leaveBook();
  // Another game: a set-up alone may just be the way to tell the next position.
  void returnToBook() { bookExit_.reset(); }
  bool hasLeftBook() const { return bookExit_.has_value(); }
  // Is this the position in which the book was left?
  bool isAtBookExit() const { return hasLeftBook() && board_.hash == bookExit_->hash; }
  // Of the first move out of book, counted from 1; 0 while the game is in book.
  std::uint32_t firstPlyOutOfBook() const { return hasLeftBook() ? bookExit_->ply + 1 : 0; }
  // The engine's own moves since then, this one included; nothing while in book, or when the game
  // was taken back to before that point.
  std::optional<int> movesOutOfBook() const;

 private:
  // What taking a move back needs and the board does not keep, as it was before the move.
  struct Ply {
    SavedState saved;
    Move rootMove;
    std::uint32_t droppedPlies;
  };
  // The board as it was before its lists were compacted. The words of the moves before name
  // captured men by their old places in the lists.
  struct Compaction {
    std::size_t plies;  // the moves there were
    std::unique_ptr<Board> before;
  };

  static void unmake(Board& board, Ply ply);

  Board board_;
  Board draft_;  // where a position is set up until it is known to be good
  bool refused_ = false;
  std::vector<Ply> plies_;               // one for each move since the set-up
  std::vector<Compaction> compactions_;  // those that changed something, 46 in a game at the most
  Move ponderMove_;
  std::optional<Place> bookExit_;
};

}  // namespace ombrin
