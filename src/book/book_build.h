#pragma once

#include <cstdint>

#include "book/book_kind.h"
#include "book/book_output.h"
#include "book/book_table.h"
#include "book/build_settings.h"
#include "book/build_sources.h"
#include "book/error_report.h"
#include "book/game_collector.h"
#include "book/move_weights.h"
#include "book/play_settings.h"
#include "pgn/line_reader.h"

namespace ombrin {

// One run of the builder: its table, its counts and its report on standard output.
class BookBuild {
 public:
  // The book is to be of that kind. The board replays the games; it and the settings must live as
  // long as this.
  BookBuild(Board& board, BookKind kind, const BuildSettings& settings, const PlaySettings& play);

  // Each step says whether there is anything left to do.
  bool readGames(const BuildSources& sources, std::int64_t maxGames);
  bool reportGames() const;
  bool readBooks(const BuildSources& sources);

  // Games only: takes out the moves that fail the settings.
  void filter();
  void sort();
  // Games only: of a sorted table, takes out the moves that a position can do without.
  void thin();
  // Of a sorted table.
  bool save(BookOutput& output);

 private:
  bool readCollection(LineReader& lines, GameCollector& collector, Progress& progress,
                      std::int64_t maxGames);
  void reportRoom() const;
  void printMovesPerPosition() const;

  const BookKind kind_;
  const BuildSettings& settings_;
  const PlaySettings& play_;
  KnownOfMoves known_;
  BuildCounters counters_;
  BookTable table_;
  ErrorReport errors_;
  std::uint64_t bytesBefore_ = 0;  // of the sources that have been read
  std::int64_t games_ = 0;
  std::int64_t moves_ = 0;  // that are left
  std::int64_t positions_ = 0;
};

}  // namespace ombrin
