// A game collection of any bytes, behind a byte for the settings: made into a book, which is looked
// up, listed, and merged.
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "book/book_builder.h"
#include "book/book_merge.h"
#include "book/book_picker.h"
#include "book/book_statistics.h"
#include "scratch_directory.h"

using namespace ombrin;

namespace {

// The lowest bit lets every game in, the others loosen or tighten what is kept.
std::string settingsOf(std::uint8_t bits) {
  std::string text;
  if ((bits & 1) != 0) {
    text += "book.build.minelo=0\nbook.build.maxelodelta=0\nbook.build.minply=0\n";
  }
  if ((bits & 2) != 0) text += "book.build.mingames=1\nbook.build.minquality=0\n";
  if ((bits & 4) != 0) text += "book.build.minscorew=0\nbook.build.minscoreb=0\n";
  if ((bits & 8) != 0) text += "book.build.keeppct=100\n";
  if ((bits & 16) != 0) text += "book.build.maxply=2\n";
  return text;
}

void checkBook(Board& board, const std::string& path) {
  BookFile book(board);
  require(book.open(path), "a book that was built opens");
  BookEntry entry;
  std::uint64_t last = 0;
  std::uint32_t records = 0;
  for (book.rewind(); book.next(entry); ++records) {
    require(entry.key >= last, "records are in the order of their keys");
    require(!entry.isEmpty(), "a move that was kept has games");
    last = entry.key;
  }
  require(records == book.recordCount(), "the file's length tells the records");
  BookPicker picker(book);
  for (Move move = picker.pick(0.5); !move.isNull(); move = picker.pick(0.5)) {
    require(isMove(board, move), "a move that is picked is a move");
    picker.show();
    if (board.ply > 20) break;
    require(!makeMove(board, move).isNull(), "and can be made");
  }
  logBook(book);
  if (book.isEmpty()) return;
  const std::string merged = path + ".merged" + path.substr(path.rfind('.'));
  require(mergeBooks(path, path, merged), "a book can be merged with itself");
  BookFile copy(board);
  require(copy.open(merged) && copy.recordCount() == records, "and stays what it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  if (size == 0) return 0;
  static const ScratchDirectory scratch;
  static Board board;
  scratch.clear();
  scratch.write("build.ini", settingsOf(data[0]));
  scratch.write("games.pgn", textOf(data + 1, size - 1));
  BuildRequest request;
  request.sources = {scratch.pathOf("games.pgn")};
  request.iniFile = scratch.pathOf("build.ini");
  request.bookFile = scratch.pathOf((data[0] & 32) != 0 ? "built.bin" : "built.obk");
  setFen(board, START_FEN);
  if (buildBook(board, request)) {
    setFen(board, START_FEN);
    checkBook(board, request.bookFile);
  }
  return 0;
}
