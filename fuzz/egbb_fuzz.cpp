// The engine's side of the bitbases, with a whole library whose tables hold a pattern, in any
// position: what is found does not know colours, and only small positions are found.
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "egbb/bitbases.h"
#include "egbb/win_score.h"
#include "scratch_directory.h"
#include "support/mirrored_board.h"
#include "support/random_positions.h"
#include "table_pattern.h"

using namespace ombrin;

namespace {

constexpr int LARGEST_SCORE = 9000;
constexpr int MOST_MEN = 3;  // beside the kings

// All tables of three men and none of more.
struct Tables {
  Tables() {
    std::filesystem::create_symlink(OMBRIN_BITBASE_LIBRARY, scratch.pathOf("egbbdll.dll"));
    for (const bitbases::Material& material : bitbases::materialsOf(3)) {
      writePattern(scratch.path(), material, 0x9249249249249249, 0x2492492492492493);
    }
    require(bitbases.open(scratch.path()), "the library is there");
    require(bitbases.load(Bitbases::DEFAULT_CACHE_MB), "and loads its tables");
  }
  ScratchDirectory scratch;
  Bitbases bitbases;
};

// A losing king on f4 is approached from another side than one on f5.
bool isApproachedUnlike(Square king) {
  return king == Square::at(5, 3) || king == Square::at(5, 4);
}

void check(const Bitbases& bitbases, const Board& board) {
  static Board twin;
  mirror(board, true, false, twin);
  const bool isUnlike =
      isApproachedUnlike(board.kingSquare(WHITE)) || isApproachedUnlike(board.kingSquare(BLACK));
  const int men = board.material(WHITE).men() + board.material(BLACK).men();
  const bool hasPawns = board.material(WHITE).pawns() + board.material(BLACK).pawns() != 0;
  for (const Color color : {WHITE, BLACK}) {
    const Score score = winScore(board, color);
    require(isUnlike || winScore(twin, ~color) == score, "a win does not know colours");
    require(!hasPawns || score == 0, "a pawn's win has no score");
    if (hasPawns || men > MOST_MEN || board.material(color).men() == 0) continue;
    require(score > WIN_BOUND && score < LARGEST_SCORE, "a win looks like one, not like a mate");
  }
  if (board.hasEnPassant()) return;
  const std::optional<Score> score = bitbases.probe(board);
  require(isUnlike || bitbases.probe(twin) == score, "nor does what is found");
  require(!score || (men <= 1 && std::abs(score->value()) < LARGEST_SCORE),
          "only small positions are found, with a score below a mate");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static const Tables tables;
  static Board board;
  std::string_view text = textOf(data, size);
  if (!setFen(board, takeLine(text))) return 0;
  check(tables.bitbases, board);
  for (const char byte : text.substr(0, 64)) {
    const MoveList legal = legalMoves(board);
    if (legal.empty()) return 0;
    board.makeRoom();
    const Move made = makeMove(board, legal[static_cast<unsigned char>(byte) % legal.size()]);
    board.moveHistory[board.ply - 1] = made;  // with its check flags
    check(tables.bitbases, board);
  }
  return 0;
}
