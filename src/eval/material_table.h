#pragma once

#include <array>
#include <cstdint>

#include "board/material.h"

namespace ombrin {

// Units of pieces of both sides that make a middlegame.
inline constexpr int FULL_PHASE = 64;

// What the material of both sides, and nothing else, means for the evaluation.
struct MaterialFacts {
  MaterialFacts() = default;  // of two bare kings
  MaterialFacts(Material whiteMen, Material blackMen);

  Material white;
  Material black;
  std::int32_t imbalance = 0;  // materialImbalance()
  std::uint8_t phase = 0;      // FULL_PHASE in the middlegame and 0 without pieces
  // Both sides have pawns and more than a queen: nothing to race for, and the score counts in full.
  bool isMiddlegame = false;
  // By colour: how much an attack by its pieces on the enemy king counts, in 1/8.
  std::array<std::uint8_t, 2> attackForce{};
};

// The facts about the pairs of materials met lately: a search meets few and meets them again and
// again. One thread at a time.
class MaterialTable {
 public:
  // Until the next call.
  const MaterialFacts& of(Material white, Material black) {
    MaterialFacts& entry = entries_[index(white, black)];
    if (entry.white != white || entry.black != black) entry = MaterialFacts(white, black);
    return entry;
  }

 private:
  static constexpr int INDEX_BITS = 8;

  // Multiplying by the golden ratio spreads the words (D. Knuth, "The Art of Computer Programming",
  // volume 3, 6.4).
  static std::uint32_t index(Material white, Material black) {
    constexpr std::uint32_t GOLDEN = 0x9e3779b9;
    return (white.word() * GOLDEN ^ black.word()) * GOLDEN >> (32 - INDEX_BITS);
  }

  std::array<MaterialFacts, 1 << INDEX_BITS> entries_;
};

}  // namespace ombrin
