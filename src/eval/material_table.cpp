#include "eval/material_table.h"

#include <algorithm>

#include "eval/material_imbalance.h"

namespace ombrin {

namespace {

// Units of pieces from which on they can attack a king.
constexpr int ATTACKERS = 11;

std::uint8_t attackForceOf(Material attacker) {
  if (attacker.units() < ATTACKERS) return 0;
  return static_cast<std::uint8_t>(std::clamp(8 * attacker.queens() + attacker.units() - 16, 0, 8));
}

bool isMiddlegameOf(Material white, Material black) {
  return std::min(white.units(), black.units()) > Material::of(QUEEN).units() &&
         std::min(white.pawns(), black.pawns()) > 0;
}

}  // namespace

MaterialFacts::MaterialFacts(Material whiteMen, Material blackMen)
    : white(whiteMen),
      black(blackMen),
      imbalance(materialImbalance(white, black)),
      phase(static_cast<std::uint8_t>(std::min(white.units() + black.units(), FULL_PHASE))),
      isMiddlegame(isMiddlegameOf(white, black)),
      attackForce{attackForceOf(white), attackForceOf(black)} {}

}  // namespace ombrin
