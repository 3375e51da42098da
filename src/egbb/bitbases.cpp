#include "egbb/bitbases.h"

#include <algorithm>
#include <array>

#include "egbb/win_score.h"
#include "util/file_system.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

// The language of the library: squares from 0 to 63, White's men from 2 and Black's from 8 in the
// order of the types below, empty pairs at the end.
constexpr int NOT_FOUND = 99999;
constexpr std::array<PieceType, 5> TYPES = {QUEEN, ROOK, BISHOP, KNIGHT, PAWN};
constexpr int firstCode(Color color) {
  return color == WHITE ? 2 : 8;
}
constexpr int WHITE_PAWN = 6;
constexpr int BLACK_PAWN = 12;

constexpr int MOST_MEN = 5;
constexpr int MEGABYTE = 1048576;
constexpr int MOST_CACHE_MB = 2047;  // the number of bytes is an int

constexpr LogChannel LOG{"egbb"};

void logLine(const char* line) {
  logWarn(LOG, "%s\n", line);
}

struct Pair {
  int code = 0;
  int square = 0;
};
using Pairs = std::array<Pair, MOST_MEN - 2>;

Pairs menOf(const Board& board) {
  Pairs pairs;
  std::size_t count = 0;
  for (const Color color : {WHITE, BLACK}) {
    int code = firstCode(color);
    for (const PieceType type : TYPES) {
      board.forEach(color, type, [&](Piece, Square square) {
        pairs[count++] = {code, square.index64()};
      });
      ++code;
    }
  }
  return pairs;
}

}  // namespace

bool Bitbases::open(std::string_view directory) {
  load_ = nullptr;
  probe_ = nullptr;
  loaded_ = false;
  maxMen_ = 0;
  memoryMen_ = 0;
  directory_ = directory.empty() ? "egbb" : directory;
  if (directory_.back() != '\\') directory_ += '\\';
  const std::string path = directory_ + "egbbdll.dll";
  if (!library_.open(localPath(path))) {
    print(stdout, "EGBB: WARNING egbb dll not found: %s\n", path.c_str());
    return false;
  }
  load_ = library_.function<LoadFunction>("load_egbb_5men");
  if (load_ == nullptr) {
    print(stdout, "EGBB: 5men load not supported\n");
    return false;
  }
  probe_ = library_.function<ProbeFunction>("probe_egbb_5men");
  if (probe_ == nullptr) {
    print(stdout, "EGBB: 5men probe not supported\n");
    return false;
  }
  // Our own library has this as well.
  if (auto* setLog = library_.function<SetLogFunction>("log_egbb_5men")) setLog(logLine);
  maxMen_ = MOST_MEN;
  return true;
}

bool Bitbases::load(int cacheMb) {
  if (!available()) {
    print(stdout, "EGBB: not available\n");
    return false;
  }
  if (loaded_) return true;
  load_(directory_.c_str(), std::clamp(cacheMb, DEFAULT_CACHE_MB, MOST_CACHE_MB) * MEGABYTE, 1);
  loaded_ = true;
  memoryMen_ = 4;

  // One position of each number of men stands for all of them.
  const auto holds = [this](Pair second, Pair third) {
    return probe_(WHITE, A1.index64(), H8.index64(), WHITE_PAWN, Square::at(0, 2).index64(),
                  second.code, second.square, third.code, third.square) != NOT_FOUND;
  };
  const Pair pawnOnB3 = {WHITE_PAWN, Square::at(1, 2).index64()};
  const bool holds3 = holds({}, {});
  const bool holds4 = holds(pawnOnB3, {});
  const bool holds5 = holds(pawnOnB3, {BLACK_PAWN, Square::at(7, 6).index64()});
  print(stdout, "egbb.3men=%i\n", holds3 ? 1 : 0);
  print(stdout, "egbb.4men=%i\n", holds4 ? 1 : 0);
  print(stdout, "egbb.5men=%i\n", holds5 ? 1 : 0);
  maxMen_ = holds5 ? 5 : holds4 ? 4 : holds3 ? 3 : 0;
  print(stdout, "EGBB: loaded, maxmen=%i, ram=%i\n", maxMen_, memoryMen_);
  return true;
}

std::optional<Score> Bitbases::probe(const Board& board) const {
  const int men = board.material(WHITE).men() + board.material(BLACK).men();
  if (!available() || men > maxMen_ - 2) return std::nullopt;
  const auto [first, second, third] = menOf(board);
  const int result = probe_(static_cast<int>(board.side), board.kingSquare(WHITE).index64(),
                            board.kingSquare(BLACK).index64(), first.code, first.square,
                            second.code, second.square, third.code, third.square);
  if (result == NOT_FOUND) return std::nullopt;
  if (result == 0) return DRAW;
  const Color winner = result > 0 ? board.side : ~board.side;
  const Score score = winScore(board, winner);
  if (score == 0) return result;
  return result > 0 ? score : -score;
}

}  // namespace ombrin
