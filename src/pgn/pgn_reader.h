#pragma once

#include <cstdint>
#include <string_view>

#include "pgn/line_reader.h"
#include "pgn/pgn_game.h"

namespace ombrin {

// Reads a game collection in Portable Game Notation, game by game. It refuses nothing: whatever is
// no tag, comment, variation, number, glyph or result is taken for a move. Comments (in braces, or
// from a semicolon to the end of the line) and variations may stand anywhere, inside each other,
// and go on over any number of lines. Castling written with zeros and figurines are turned into
// letters. One thread at a time.
class PgnReader {
 public:
  // A comment in braces that is open for more lines than this ends before the next game's Event
  // tag.
  static constexpr std::uint32_t MAX_COMMENT_LINES = 1000;

  // The lines must live as long as this.
  explicit PgnReader(LineReader& lines) : lines_(lines) {}

  // The next game, valid until the next call; null when nothing is left to read. What makes no
  // sense is put into the game's warning.
  const PgnGame* readGame();

  // Lines read so far in the whole file.
  std::uint32_t lineCount() const { return lineCount_; }

 private:
  bool isGameNext();
  void readLine(std::string_view line);
  void readTag(std::string_view line);
  void setResultTag(std::string_view value, std::string_view restOfLine);
  void readMoveText(std::string_view line);
  std::string_view skipVariation(std::string_view text);
  std::string_view readToken(std::string_view text);
  std::string_view readGlyph(std::string_view text);
  void readWord(std::string_view word, unsigned traits);
  bool readResult(std::string_view word);
  void addOddMove(std::string_view word);

  LineReader& lines_;
  std::uint32_t lineCount_ = 0;
  // Since a comment in braces began; 0 outside.
  std::uint32_t commentLines_ = 0;
  int variationDepth_ = 0;
  PgnGame game_;
};

}  // namespace ombrin
