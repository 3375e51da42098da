#pragma once

#include <cstdint>
#include <string_view>

#include "pgn/pgn_game.h"
#include "util/text_file.h"

namespace ombrin {

// Reads a game collection in Portable Game Notation, game by game. It works by lines and refuses
// nothing: whatever is no tag, comment, variation, number, glyph or result is taken for a move.
// Comments stand in braces, variations in parentheses; there is no other form of either. One thread
// at a time.
class PgnReader {
 public:
  explicit PgnReader(TextFile& file) : file_(file) {}

  // The next game, valid until the next call; null when nothing is left to read. A result that
  // makes no sense is put into the game's warning and reported on standard output.
  const PgnGame* readGame();

  // Lines read so far in the whole file.
  std::uint32_t lineCount() const { return lineCount_; }

 private:
  void readLine(std::string_view line);
  void readTag(std::string_view line);
  void setResultTag(std::string_view value, std::string_view restOfLine);
  void readMoveText(std::string_view line);
  void readToken(std::string_view token);
  bool readResult(std::string_view token);

  TextFile& file_;
  std::uint32_t lineCount_ = 0;
  PgnGame game_;
};

}  // namespace ombrin
