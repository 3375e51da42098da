// A book of any bytes: opened, looked up, listed, and merged with itself and with what its second
// half is as a book.
#include <unistd.h>

#include <filesystem>
#include <string>

#include "board/fen.h"
#include "board/move_generation.h"
#include "book/book_key.h"
#include "book/book_merge.h"
#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "fuzz_input.h"

using namespace ombrin;

namespace {

void write(const std::string& path, const std::uint8_t* data, std::size_t size) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  require(file != nullptr, "there is a temporary file");
  std::fwrite(data, 1, size, file);
  std::fclose(file);
}

void checkMerge(const std::string& master, const std::string& secondary,
                const std::string& result) {
  Board board;
  BookFile book(board);
  const bool fit = book.open(secondary) && book.open(master) && !book.isEmpty();
  for (const MergeRule rule : {MergeRule::MASTER_WINS, MergeRule::SUM}) {
    require(mergeBooks(master, secondary, result, rule) == fit, "books that open can be merged");
  }
  if (!fit) return;
  require(book.open(result), "the result is a book");
  BookEntry entry;
  std::uint32_t records = 0;
  for (book.rewind(); book.next(entry);) ++records;
  const std::size_t length = std::filesystem::file_size(result);
  require(length == BookHeader::SIZE + records * std::size_t(book.header().recordSize),
          "of whole records");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static const std::string path = "/tmp/ombrin-book-fuzz-" + std::to_string(getpid());
  static const std::string half = path + "-half";
  static const std::string merged = path + "-merged";
  static Board board;
  setFen(board, START_FEN);
  write(path, data, size);
  write(half, data + size / 2, size - size / 2);

  BookFile book(board);
  require(book.open(path) == book.problem().empty(),
          "a file that is no book is refused for a reason");
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
  checkMerge(path, path, merged);
  checkMerge(path, half, merged);
  checkMerge(half, path, merged);
  unlink(path.c_str());
  unlink(half.c_str());
  unlink(merged.c_str());
  return 0;
}
