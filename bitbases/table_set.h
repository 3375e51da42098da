#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>

#include "layout.h"
#include "material.h"
#include "position.h"

namespace bitbases {

// The tables that are at hand, mapped from their files. A table once held stays held, and its file
// mapped, until the process ends: there is never a moment at which a reader could lose it.
//
// value() may be called from any number of threads at any time, also while tables are being added.
class TableSet {
 public:
  TableSet() = default;
  TableSet(const TableSet&) = delete;
  TableSet& operator=(const TableSet&) = delete;

  // Adds the table of a canonical material from the directory's file. False when there is no such
  // file or it is damaged; true also when the table was held already.
  bool add(const std::string& directory, const Material& material);
  bool holds(const Material& material) const;

  // The value of a legal position with its men in any order and no en-passant square; a draw for
  // bare kings. Nothing when the table is not held.
  std::optional<Value> value(const Position& position) const;

 private:
  struct Slot {
    // Set last, and read first: whoever sees it sees the layout.
    std::atomic<const std::byte*> data = nullptr;
    Layout layout;
  };

  std::mutex adding_;
  std::array<Slot, static_cast<std::size_t>(Material::SIDES) * Material::SIDES> slots_;
};

}  // namespace bitbases
