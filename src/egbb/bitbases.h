// Endgame bitbases through an outside library that is loaded at run time.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "board/board.h"
#include "board/score.h"
#include "platform/shared_library.h"

namespace ombrin {

// Opening and loading happen once, before any search; probe() may then be called from any number of
// threads. Messages go to standard output; without a library every probe finds nothing.
class Bitbases {
 public:
  static constexpr int DEFAULT_CACHE_MB = 16;

  // Loads the library from `directory` ("egbb" when empty). False when it or one of its two
  // functions is not there.
  bool open(std::string_view directory);
  // Has the library load its tables with a cache of at least `cacheMb` megabytes (16 at the least)
  // and finds out how many men they cover. False when no library is open.
  bool load(int cacheMb);

  bool available() const { return probe_ != nullptr; }
  // Men, kings included, that the tables cover, and that are probed at every depth; 0 when there
  // are no bitbases.
  int maxMen() const { return maxMen_; }
  int memoryMen() const { return memoryMen_; }

  // The score of a position without an en-passant square for the side to move; nothing when it is
  // not held.
  std::optional<Score> probe(const Board& board) const;

 private:
  using LoadFunction = void(const char*, int, int);
  using SetLogFunction = void(void (*)(const char*));
  using ProbeFunction = int(int, int, int, int, int, int, int, int, int);

  std::string directory_;
  SharedLibrary library_;
  LoadFunction* load_ = nullptr;
  ProbeFunction* probe_ = nullptr;
  bool loaded_ = false;
  int maxMen_ = 0;
  int memoryMen_ = 0;
};

}  // namespace ombrin
