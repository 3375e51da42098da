#pragma once

#include <array>
#include <cstdint>

#include "board/material.h"

namespace ombrin {

// What the two sides' men are worth together beyond the sum of their values (the bishop pair, a
// rook against two minor pieces, pieces that gain or lose with the number of pawns), in centipawns,
// White minus Black.
int materialImbalance(Material white, Material black);

// Remembers it for the pairs met lately: a search meets few and meets them again and again. One
// thread at a time.
class ImbalanceCache {
 public:
  int of(Material white, Material black) {
    if (white == black) return 0;
    Entry& entry = entries_[index(white, black)];
    if (entry.white != white || entry.black != black) {
      entry = {white, black, materialImbalance(white, black)};
    }
    return entry.imbalance;
  }

 private:
  // As good as it is made: no men on either side are worth nothing together.
  struct Entry {
    Material white;
    Material black;
    std::int32_t imbalance = 0;
  };
  static constexpr int INDEX_BITS = 8;

  static std::uint32_t index(Material white, Material black) {
    // Multiplying by the golden ratio spreads the words (D. Knuth, "The Art of Computer
    // Programming", volume 3, 6.4).
    constexpr std::uint32_t GOLDEN = 0x9e3779b9;
    return (white.word() * GOLDEN ^ black.word()) * GOLDEN >> (32 - INDEX_BITS);
  }

  std::array<Entry, 1 << INDEX_BITS> entries_;
};

}  // namespace ombrin
