// Game collections for tests and measurements: random legal games as PGN text.
#pragma once

#include <array>
#include <random>
#include <string>

#include "support/random_positions.h"

namespace ombrin {

// The move in algebraic notation, with the origin as far as it is needed and check signs.
inline std::string algebraicText(const Board& board, Move move, const MoveList& legal) {
  if (move.isCastling()) return move.to().file() == 6 ? "O-O" : "O-O-O";
  const PieceType type = board.at(move.from()).type();
  const auto fileOf = [](Square square) { return static_cast<char>('a' + square.file()); };
  const auto rankOf = [](Square square) { return static_cast<char>('1' + square.rank()); };
  std::string text;
  if (type == PAWN) {
    if (move.isCapture()) text += fileOf(move.from());
  } else {
    text += upperLetter(type);
    bool rivals = false;
    bool sameFile = false;
    bool sameRank = false;
    for (const Move other : legal) {
      if (other.to() != move.to() || other.from() == move.from()) continue;
      if (board.at(other.from()).type() != type) continue;
      rivals = true;
      sameFile = sameFile || other.from().file() == move.from().file();
      sameRank = sameRank || other.from().rank() == move.from().rank();
    }
    if (rivals && (!sameFile || sameRank)) text += fileOf(move.from());
    if (rivals && sameFile) text += rankOf(move.from());
  }
  if (move.isCapture()) text += 'x';
  text += move.to().text();
  if (move.isPromotion()) {
    text += '=';
    text += upperLetter(move.promotion());
  }
  return text;
}

// Plays one random game after the other. Openings are skewed towards few moves, so that games share
// positions as real ones do.
class RandomGames {
 public:
  explicit RandomGames(unsigned seed) : random_(seed) {}

  // The next game with its tags, and a blank line after it.
  std::string next() {
    static constexpr std::array<const char*, 3> RESULTS = {"1/2-1/2", "1-0", "0-1"};
    const std::string result = RESULTS[below(3)];
    const unsigned elo = 2250 + below(500);
    const auto tag = [](const char* name, const std::string& value) {
      return std::string("[") + name + " \"" + value + "\"]\n";
    };
    std::string text = tag("Event", "Random games") + tag("Site", "?") +
                       tag("Date", std::to_string(1980 + below(40)) + ".??.??") +
                       tag("Round", std::to_string(++number_)) +
                       tag("White", "Player " + std::to_string(below(5000))) +
                       tag("Black", "Player " + std::to_string(below(5000))) +
                       tag("Result", result) + tag("WhiteElo", std::to_string(elo)) +
                       tag("BlackElo", std::to_string(elo + below(150))) + "\n";
    std::size_t lineStart = text.size();
    const auto addWord = [&text, &lineStart](const std::string& word) {
      const bool full = text.size() - lineStart + word.size() > 78;
      if (text.size() > lineStart) text += full ? '\n' : ' ';
      if (full) lineStart = text.size();
      text += word;
    };
    play(60 + below(100), addWord);
    addWord(result);
    return text + "\n\n";
  }

 private:
  unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

  template <typename Writer>
  void play(unsigned plies, Writer&& addWord) {
    setFen(board_, START_FEN);
    for (unsigned ply = 0; ply < plies; ++ply) {
      const MoveList legal = legalMoves(board_);
      if (legal.empty()) return;
      const Move move = legal[choose(ply, static_cast<unsigned>(legal.size()))];
      std::string text = algebraicText(board_, move, legal);
      const Move made = makeMove(board_, move);
      board_.moveHistory[board_.ply - 1] = made;
      if (made.isCheck()) text += '+';
      addWord(ply % 2 == 0 ? std::to_string(ply / 2 + 1) + ". " + text : text);
    }
  }

  unsigned choose(unsigned ply, unsigned count) {
    constexpr unsigned OPENING_PLIES = 14;
    if (ply >= OPENING_PLIES) return below(count);
    unsigned choice = 0;
    while (below(2) != 0) ++choice;
    // Which moves are popular depends on the position.
    return static_cast<unsigned>((board_.hash + choice) % count);
  }

  std::mt19937 random_;
  unsigned number_ = 0;
  Board board_;
};

}  // namespace ombrin
