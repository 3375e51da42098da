#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "board/board.h"
#include "book/book_kind.h"
#include "book/book_table.h"
#include "book/build_settings.h"
#include "pgn/pgn_game.h"

namespace ombrin {

// What a build has counted so far, in games and in moves.
struct BuildCounters {
  std::int64_t errors = 0;
  std::int64_t otherVariants = 0;
  std::int64_t belowMinply = 0;
  std::int64_t belowMinelo = 0;
  std::int64_t unrated = 0;  // of those, the games without any Elo
  std::int64_t aboveMaxelodelta = 0;
  std::int64_t withoutResult = 0;
  std::int64_t used = 0;
  std::int64_t movesEntered = 0;
  std::int64_t droppedByGames = 0;
  std::int64_t droppedByQuality = 0;
  std::int64_t droppedByScore = 0;
  std::int64_t droppedByKeeppct = 0;
};

// What is wrong with a game.
struct GameProblem {
  enum Kind : std::uint8_t { UNCLEAR, REFUSED_POSITION, ILLEGAL_MOVE };
  static constexpr std::size_t KINDS = 3;

  Kind kind = UNCLEAR;
  std::string move;  // the one that cannot be played, with its number; empty when it is none
  std::string reason;
};

// Replays games on the table's board and enters their moves into the table. One thread at a time.
class GameCollector {
 public:
  // The moves are filed for a book of that kind. The others must live as long as this.
  GameCollector(BookTable& table, BookKind kind, const BuildSettings& settings,
                BuildCounters& counters);

  // Counts the game as what it is, and enters its first plies when it passes the settings. False
  // when there is a problem with the game; its moves before the first bad one are entered all the
  // same, and the board has the position before that.
  bool addGame(const PgnGame& game);
  // Of the last game for which there was one.
  const GameProblem& problem() const { return problem_; }
  // There was no room for a game, and it was not counted at all.
  bool isFull() const { return isFull_; }

 private:
  // A move that waits for the end of its game.
  struct Entered {
    BookEntry move;  // without games
    BookTable::Outcome outcome;
    float weight;
  };

  bool isWanted(const PgnGame& game);
  bool replay(const PgnGame& game);
  Move findMove(std::string_view text);
  bool fail(GameProblem::Kind kind, std::string move, std::string reason);
  void enterMoves();

  BookTable& table_;
  const BookKind kind_;
  const BuildSettings& settings_;
  BuildCounters& counters_;
  Board start_;
  std::vector<Entered> entered_;
  GameProblem problem_;
  bool isFull_ = false;
};

}  // namespace ombrin
