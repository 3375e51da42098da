#include "fake_library.h"

namespace {
FakeLibrary state;
}  // namespace

extern "C" {

FakeLibrary* fake_library() {
  return &state;
}

#ifndef WITHOUT_LOAD
void load_egbb_5men(const char* directory, int cacheBytes, int mode) {
  ++state.loads;
  state.directory = directory;
  state.cacheBytes = cacheBytes;
  state.mode = mode;
}
#endif

#ifndef WITHOUT_PROBE
int probe_egbb_5men(int side, int whiteKing, int blackKing, int piece1, int square1, int piece2,
                    int square2, int piece3, int square3) {
  ++state.probes;
  state.lastProbe = {side, whiteKing, blackKing, piece1, square1, piece2, square2, piece3, square3};
  const int men = 2 + (piece1 != 0) + (piece2 != 0) + (piece3 != 0);
  return men <= state.heldMen ? state.answer : 99999;
}
#endif

}  // extern "C"
