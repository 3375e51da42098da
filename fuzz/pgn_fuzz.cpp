// A game collection of any bytes: every line is read once, and no text is made from nothing.
#include "fuzz_input.h"
#include "pgn/file_source.h"
#include "pgn/pgn_reader.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  if (size == 0) return 0;
  std::FILE* stream = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
  require(stream != nullptr, "memory can be read as a stream");
  std::uint32_t lines = 0;
  std::uint8_t last = '\n';
  for (std::size_t i = 0; i < size; last = data[i++]) {
    lines += data[i] == '\r' || (data[i] == '\n' && last != '\r') ? 1 : 0;
  }
  lines += last == '\n' || last == '\r' ? 0 : 1;

  FileSource source(stream);
  LineReader text(source);
  PgnReader reader(text);
  std::size_t bytes = 0;
  while (const PgnGame* game = reader.readGame()) {
    for (std::size_t i = 0; i < game->moves.size(); ++i) {
      require(!game->moves[i].empty(), "a move text is not empty");
      bytes += game->moves[i].size();
    }
    bytes += game->white.size() + game->fen.size();
    require(game->result >= NO_RESULT && game->result <= BLACK_WON, "a result is one of four");
  }
  // A byte-order mark alone is no line, and UTF-16 has none.
  const bool isPlain = text.problem().empty() && !textOf(data, size).ends_with("\xef\xbb\xbf");
  require(!isPlain || reader.lineCount() == lines, "every line is counted once");
  require(bytes <= size, "no text is longer than its file");
  return 0;
}
