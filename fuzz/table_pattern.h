#pragma once

#include <string>

#include "../bitbases/table_file.h"
#include "fuzz_input.h"

namespace ombrin {

// Writes a whole table file whose values know nothing of chess.
inline void writePattern(const std::string& directory, const bitbases::Material& material,
                         std::uint64_t won, std::uint64_t lost) {
  bitbases::TableWriter writer(material, 0, 0);
  bitbases::Block block;
  for (std::uint32_t word = 0; word < bitbases::Block::WORDS; ++word) {
    block.won[word] = won * word;
    block.lost[word] = lost * word;
  }
  for (std::uint32_t n = 0; n < writer.blocks(); ++n) writer.set(n, bitbases::packed(block));
  require(writer.write(directory), "a table can be written");
}

}  // namespace ombrin
