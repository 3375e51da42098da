// Which men a table is about.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "position.h"

namespace bitbases {

// The men of both sides besides the kings, at most three together. There is a table for every
// material whose first side has more men than its second or, with as many, is the stronger by the
// first type that differs; the tables of the others are these with the colours exchanged.
class Material {
 public:
  // How many different sides of at most three men there are.
  static constexpr int SIDES = 56;

  Material() = default;
  // Of a sorted position, as it stands.
  explicit Material(const Position& sorted);
  // "KRPKR", in either order of the two sides; nothing when it is no material.
  static std::optional<Material> fromName(std::string_view name);

  // The material of a table, by exchanging the sides when needed.
  Material canonical() const;
  bool isCanonical() const;
  // The number of a slot in an array of SIDES * SIDES.
  int number() const;
  std::string name() const;
  // Kings included.
  int men() const { return pattern_.count + 2; }
  // The types with their colours, sorted; all on a1.
  const Position& pattern() const { return pattern_; }

  // The materials, canonical, that one capture or promotion leads to.
  std::vector<Material> successors() const;

 private:
  Position pattern_;
};

// All materials of that many men, kings included, for which there are tables.
std::vector<Material> materialsOf(int men);

// The number of a side (see Material::SIDES) from its sorted types.
int sideNumber(const Position& sorted, Color color);

}  // namespace bitbases
