// A position, then texts that may be moves of it, line by line.
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/notation.h"
#include "board/self_check.h"
#include "fuzz_input.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static Board board;
  std::string_view text = textOf(data, size);
  if (!setFen(board, takeLine(text))) return 0;
  while (!text.empty()) {
    const Move move = parseMove(board, takeLine(text));
    if (move.isNull()) continue;
    require(isMove(board, move), "a move that is read is a move");
    require(parseMove(board, moveToText(move)) == move, "its own text reads as the same move");
    board.makeRoom();
    require(!makeMove(board, move).isNull(), "a move that is read can be made");
    checkBoard(board, "fuzz", move);
  }
  return 0;
}
