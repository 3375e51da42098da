#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "board/move.h"
#include "book/book_file.h"
#include "book/move_weights.h"
#include "book/play_settings.h"
#include "util/ini_file.h"

namespace ombrin {

// Picks a book move for the position of a book's board: moves that fail the settings are rejected,
// the rest are weighed by games, Elo and score, and one is drawn with these weights. Remembers
// nothing between picks. One thread at a time, the one that owns the board.
class BookPicker {
 public:
  explicit BookPicker(BookFile& book) : book_(book) {}

  // Reads the settings; to be called when a book has been opened.
  void configure(const IniFile& ini) { settings_ = PlaySettings(ini); }
  const PlaySettings& settings() const { return settings_; }

  // A legal move with its check flags, or the null move: no book, position not in it, beyond the
  // ply limit, every move rejected, nothing drawn. Draws from std::rand().
  Move pick();
  // pick() with the number drawn, from 0 up to, not including, 1.
  Move pick(double drawn);

  // A move that may be picked: legal, or null when the book's move does not fit the position.
  struct Choice {
    Move move;
    double probability;
  };
  // What pick() draws from, in the book's order; nothing when it would give nothing.
  std::vector<Choice> choices();

  // Prints the moves of the position with their numbers to standard output.
  void show();

  // Fills the records of the first `count` of the book's move slots (1 to 32) and copies their
  // probabilities to the front of `probabilities`.
  void weigh(int count, std::span<double> probabilities, Color side);
  // Of slot index + 1.
  const PickRecord& record(int index) const { return records_[index]; }

 private:
  BookFile& book_;
  std::array<PickRecord, BookFile::MAX_MOVES_READ> records_;
  PlaySettings settings_;
};

}  // namespace ombrin
