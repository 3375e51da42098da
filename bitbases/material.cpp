#include "material.h"

#include <algorithm>

namespace bitbases {

namespace {

constexpr std::string_view LETTERS = "QRBNP";
// Types are digits of base 6, 0 for no man.
constexpr int CODES = 6 * 6 * 6;

// Numbers the sorted sides in the order of their codes.
consteval std::array<std::uint8_t, CODES> makeSideNumbers() {
  std::array<std::uint8_t, CODES> numbers{};
  std::uint8_t next = 0;
  for (int code = 0; code < CODES; ++code) {
    const int first = code % 6;
    const int second = code / 6 % 6;
    const int third = code / 36;
    // A digit once zero stays zero, and types never get stronger.
    const bool isSorted = (second == 0 || (first != 0 && first <= second)) &&
                          (third == 0 || (second != 0 && second <= third));
    if (isSorted) numbers[code] = next++;
  }
  if (next != Material::SIDES) throw "the number of sides is wrong";
  return numbers;
}
constexpr std::array<std::uint8_t, CODES> SIDE_NUMBERS = makeSideNumbers();

// The types of a side, the strongest first.
std::vector<Type> typesOf(const Position& pattern, Color color) {
  std::vector<Type> types;
  for (const Man& man : pattern.men()) {
    if (man.color == color) types.push_back(man.type);
  }
  return types;
}

// The side that "RP" stands for, added to the pattern; false when the text is no side.
bool addSide(Position& pattern, Color color, std::string_view text) {
  for (const char letter : text) {
    const std::size_t type = LETTERS.find(letter);
    if (type == std::string_view::npos || pattern.count == MAX_MEN) return false;
    pattern.add({static_cast<std::uint8_t>(color), static_cast<Type>(type), 0});
  }
  return true;
}

}  // namespace

int sideNumber(const Position& sorted, Color color) {
  int code = 0;
  int weight = 1;
  for (const Man& man : sorted.men()) {
    if (man.color != color) continue;
    code += weight * (man.type + 1);
    weight *= 6;
  }
  return SIDE_NUMBERS[code];
}

Material::Material(const Position& sorted) {
  for (const Man& man : sorted.men()) pattern_.add({man.color, man.type, 0});
}

std::optional<Material> Material::fromName(std::string_view name) {
  if (name.empty() || name.front() != 'K') return std::nullopt;
  const std::size_t second = name.find('K', 1);
  if (second == std::string_view::npos) return std::nullopt;
  Position pattern;
  if (!addSide(pattern, 0, name.substr(1, second - 1)) ||
      !addSide(pattern, 1, name.substr(second + 1)) || pattern.count == 0) {
    return std::nullopt;
  }
  sortMen(pattern);
  return Material(pattern);
}

bool Material::isCanonical() const {
  const std::vector<Type> first = typesOf(pattern_, 0);
  const std::vector<Type> second = typesOf(pattern_, 1);
  return first.size() != second.size() ? first.size() > second.size() : first <= second;
}

Material Material::canonical() const {
  if (isCanonical()) return *this;
  Position exchanged = colorsExchanged(pattern_);
  sortMen(exchanged);
  return Material(exchanged);
}

int Material::number() const {
  return sideNumber(pattern_, 0) * SIDES + sideNumber(pattern_, 1);
}

std::string Material::name() const {
  std::string name = "K";
  Color color = 0;
  for (const Man& man : pattern_.men()) {
    if (man.color != color) name += 'K';
    color = man.color;
    name += LETTERS[man.type];
  }
  return color == 0 ? name + 'K' : name;
}

std::vector<Material> Material::successors() const {
  std::vector<Material> found;
  const auto addOnce = [&found](Position pattern) {
    if (pattern.count == 0) return;
    sortMen(pattern);
    const Material material = Material(pattern).canonical();
    if (std::ranges::none_of(
            found, [&](const Material& one) { return one.number() == material.number(); })) {
      found.push_back(material);
    }
  };
  for (int slot = 0; slot < pattern_.count; ++slot) {
    Position captured = pattern_;
    captured.remove(slot);
    addOnce(captured);
    if (pattern_.slots[slot].type != PAWN) continue;
    for (const Type type : {QUEEN, ROOK, BISHOP, KNIGHT}) {
      Position promoted = pattern_;
      promoted.slots[slot].type = type;
      addOnce(promoted);
      // A pawn may capture as it promotes.
      for (int other = 0; other < pattern_.count; ++other) {
        if (pattern_.slots[other].color == pattern_.slots[slot].color) continue;
        Position both = promoted;
        both.remove(other);
        addOnce(both);
      }
    }
  }
  return found;
}

std::vector<Material> materialsOf(int men) {
  std::vector<Material> materials;
  const auto visit = [&](const auto& self, Position pattern, Color color, int type) -> void {
    if (pattern.count == men - 2) {
      const Material material(pattern);
      if (material.isCanonical()) materials.push_back(material);
      return;
    }
    for (Color next = color; next < 2; ++next) {
      for (int t = next == color ? type : 0; t < TYPES; ++t) {
        Position longer = pattern;
        longer.add({static_cast<std::uint8_t>(next), static_cast<Type>(t), 0});
        self(self, longer, next, t);
      }
    }
  };
  visit(visit, Position{}, 0, 0);
  return materials;
}

}  // namespace bitbases
