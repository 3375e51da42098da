#include "table_set.h"

#include "mapped_file.h"
#include "table_file.h"

namespace bitbases {

bool TableSet::add(const std::string& directory, const Material& material) {
  const std::scoped_lock lock(adding_);
  if (holds(material)) return true;
  const auto file = mapFile(tablePath(directory, material));
  const Layout layout(material);
  const auto data = tableData(file, material, layout);
  if (!data) {
    unmapFile(file);
    return false;
  }
  Slot& slot = slots_[static_cast<std::size_t>(material.number())];
  slot.layout = layout;
  slot.data.store(data->data(), std::memory_order_release);
  return true;
}

bool TableSet::holds(const Material& material) const {
  return slots_[static_cast<std::size_t>(material.number())].data.load(std::memory_order_acquire) !=
         nullptr;
}

std::optional<Value> TableSet::value(const Position& position) const {
  if (position.count == 0) return DRAW;
  Position sorted = position;
  sortMen(sorted);
  const auto slotOf = [this](const Position& men) -> const Slot& {
    const int number = sideNumber(men, 0) * Material::SIDES + sideNumber(men, 1);
    return slots_[static_cast<std::size_t>(number)];
  };
  const Slot* slot = &slotOf(sorted);
  const std::byte* data = slot->data.load(std::memory_order_acquire);
  if (data == nullptr) {
    sorted = colorsExchanged(sorted);
    sortMen(sorted);
    slot = &slotOf(sorted);
    data = slot->data.load(std::memory_order_acquire);
    if (data == nullptr) return std::nullopt;
  }
  return valueAt(data, slot->layout.index(sorted));
}

}  // namespace bitbases
