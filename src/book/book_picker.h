#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "board/move.h"
#include "book/book_file.h"
#include "book/play_settings.h"
#include "util/ini_file.h"

namespace ombrin {

// Why a book move is not played, as bits.
enum RejectFlag : std::uint32_t {
  TOO_FEW_GAMES = 1,
  LOW_ELO = 2,
  LOW_SCORE = 4,
  SMALL_GAME_SHARE = 8,
  ELO_FAR_BELOW_BEST = 16,
};

// What weighing found out about one move of the position.
struct PickRecord {
  std::uint32_t rejected = 0;  // RejectFlags
  double probability = 0;      // of being picked
  double gameShare = 0;
  double score = 0;  // 0 to 1
  double scoreShare = 0;
  double elo = 0;
  double eloShare = 0;
  double combined = 0;  // weight before the minimum weight cuts in
};

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

  // Prints the moves of the position with their numbers to standard output.
  void show();

  // Fills the records of the first `count` of the book's move slots (1 to 32) and copies their
  // probabilities to the front of `probabilities`.
  void weigh(int count, std::span<double> probabilities, Color side);
  // Of slot index + 1.
  const PickRecord& record(int index) const { return records_[index]; }

 private:
  void rejectEach(std::span<const BookEntry> moves, Color side);
  void rejectBesideBest(std::span<const BookEntry> moves);
  void setShares(std::span<const BookEntry> moves);
  void combine(std::span<PickRecord> records) const;

  BookFile& book_;
  std::array<PickRecord, BookFile::MAX_MOVES_READ> records_;
  PlaySettings settings_;
};

}  // namespace ombrin
