// The file of one table: a header, an index of the blocks, and the blocks.
//
//   8 bytes  "EGBBWDL" and a zero
//   4        version
//   4        words to a block
//   16       the material's name, zeros after it
//   8        words for each side to move
//   4        the order of the words (see Grid)
//   4        the longest chain (see Solver::longestChain())
//   4        zero
//   4        checksum of the index and the header's bytes before this number
//
//   8        for each block, White to move first: where its bytes end, counted from the end of the
//            index; and their checksum
//
// Numbers are little-endian. Blocks are as block.h describes them. The positions that cannot arise,
// those that a capture wins, and among the lost those that a capture saves may have any value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "block.h"
#include "file.h"
#include "grid.h"
#include "material.h"

namespace bitbases {

// DIR/krpkr.wdl for "KRPKR"; the directory may end in a separator of either kind or in none, and a
// backslash is a separator.
std::string tablePath(const std::string& directory, const Material& material);

// A file that is open for looking up, by any number of threads.
class TableFile {
 public:
  // Null when there is no such file, or when its beginning tells that it is not whole.
  static std::unique_ptr<const TableFile> open(const std::string& directory,
                                               const Material& material);

  // Reads a block and checks it; false when it is damaged or cannot be read.
  bool read(std::uint32_t number, Block& block) const;
  std::uint32_t blocks() const { return static_cast<std::uint32_t>(index_.size()); }
  // The number of the block that a word is in.
  std::uint32_t blockOf(int side, std::uint64_t word) const {
    return static_cast<std::uint32_t>(word / Block::WORDS) + (side != 0 ? blocks() / 2 : 0);
  }
  bool isWhole() const;

  const Grid& grid() const { return grid_; }
  const std::string& path() const { return path_; }
  int longestChain() const { return longestChain_; }
  std::uint64_t size() const { return file_.size(); }
  // Of the whole table.
  std::uint32_t checksum() const { return checksum_; }

 private:
  struct Entry {
    std::uint32_t end;
    std::uint32_t checksum;
  };

  TableFile(std::string path, const Material& material, int order);
  bool readIndex(const Material& material);

  std::string path_;
  File file_;
  Grid grid_;
  std::vector<Entry> index_;
  std::uint64_t data_ = 0;  // where the blocks begin
  int longestChain_ = 0;
  std::uint32_t checksum_ = 0;

  friend class TableWriter;
};

// Collects a table's blocks and writes its file.
class TableWriter {
 public:
  // With the words in one of the orders that Grid has.
  TableWriter(const Material& material, int order, int longestChain);

  // Of each block in turn. Any thread, for blocks of their own.
  void set(std::uint32_t number, std::vector<std::byte> bytes) {
    blocks_[number] = std::move(bytes);
  }
  std::uint32_t blocks() const { return static_cast<std::uint32_t>(blocks_.size()); }
  const Grid& grid() const { return grid_; }
  // Writes the file as a whole or not at all: under another name first. False when that is not
  // possible.
  bool write(const std::string& directory) const;

 private:
  Material material_;
  int order_;
  int longestChain_;
  Grid grid_;
  std::vector<std::vector<std::byte>> blocks_;
};

}  // namespace bitbases
