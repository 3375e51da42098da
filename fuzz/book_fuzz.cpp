// A book of any bytes: opened, looked up, listed, and merged with itself.
#include <unistd.h>

#include <string>

#include "board/fen.h"
#include "board/move_generation.h"
#include "book/book_key.h"
#include "book/book_merge.h"
#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "fuzz_input.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static const std::string path = "/tmp/ombrin-book-fuzz-" + std::to_string(getpid());
  static const std::string merged = path + "-merged";
  static Board board;
  setFen(board, START_FEN);
  std::FILE* file = std::fopen(path.c_str(), "wb");
  require(file != nullptr, "there is a temporary file");
  std::fwrite(data, 1, size, file);
  std::fclose(file);

  BookFile book(board);
  require(book.open(path), "a file that exists is opened");
  require(book.readMoves() <= BookFile::MAX_MOVES_READ, "a position has no more than 32 moves");
  if (book.find(startBookKey())) {
    BookEntry entry;
    require(!book.next(entry) || entry.key == startBookKey(), "what is found is what was sought");
  }
  BookPicker picker(book);
  const Move move = picker.pick(0.5);
  require(move.isNull() || isMove(board, move), "a move that is picked is a move");
  picker.show();
  logBook(book);
  require(mergeBooks(path, path, merged), "a book that opens can be merged");
  unlink(path.c_str());
  unlink(merged.c_str());
  return 0;
}
