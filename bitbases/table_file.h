// The file of one table: a header, then five positions to a byte.
//
//   8 bytes  "EGBBWDL" and a zero
//   4        version
//   4        zero
//   16       the material's name, zeros after it
//   8        number of positions
//   8        checksum of the data, the positions' number and the name
//
// Numbers are little-endian. A data byte is the sum of five values (0 draw, 1 win, 2 loss of the
// side to move) times 1, 3, 9, 27 and 81; positions that cannot arise count as draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "layout.h"
#include "material.h"

namespace bitbases {

// DIR/krpkr.wdl for "KRPKR"; the directory may end in a separator of either kind or in none, and a
// backslash is a separator.
std::string tablePath(const std::string& directory, const Material& material);

// The data of the file's bytes when it is whole and holds that material.
std::optional<std::span<const std::byte>> tableData(std::span<const std::byte> file,
                                                    const Material& material, const Layout& layout);

// Value of the position with that number.
inline Value valueAt(const std::byte* data, std::uint64_t index) {
  constexpr std::uint8_t WEIGHTS[] = {1, 3, 9, 27, 81};
  const auto byte = static_cast<unsigned>(data[index / 5]);
  return static_cast<Value>(byte / WEIGHTS[index % 5] % 3);
}

// Writes the file as a whole or not at all: under another name first. The values are one byte per
// position. False when that is not possible.
bool writeTable(const std::string& directory, const Material& material, const Layout& layout,
                std::span<const std::uint8_t> values);

}  // namespace bitbases
