#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "block_cache.h"
#include "material.h"
#include "position.h"
#include "table_file.h"

namespace bitbases {

// The tables that are at hand, and the cache of their blocks. A table that turns out to be damaged
// is not held from then on; its file stays open until the process ends, so that there is never a
// moment at which a reader could lose it.
//
// value() may be called from any number of threads at any time, also while tables are being added.
class TableSet {
 public:
  // Is told of every file that cannot be used, once, on the thread that finds out.
  using Report = void (*)(const std::string& path);

  explicit TableSet(Report report) : report_(report) {}
  TableSet(const TableSet&) = delete;
  TableSet& operator=(const TableSet&) = delete;

  // To be called before the first value(), and only once: later calls change nothing. As many bytes
  // as there are, when there are fewer.
  void setCache(std::size_t bytes);

  // Adds the table of a canonical material from the directory's file, unless it is held. False when
  // there is no such file or it is damaged.
  bool add(const std::string& directory, const Material& material);
  bool holds(const Material& material) const;

  // The value of a legal position with its men in any order and no en-passant square; a draw for
  // bare kings. Nothing when a table that is needed for it is not held.
  std::optional<Value> value(const Position& position) const;

 private:
  struct Table {
    explicit Table(std::unique_ptr<const TableFile> itsFile, std::uint32_t itsNumber)
        : file(std::move(itsFile)), number(itsNumber) {}
    std::unique_ptr<const TableFile> file;
    std::uint32_t number;
    std::atomic<bool> isDamaged = false;
  };

  std::optional<Value> keptValue(Table& table, const Position& sorted) const;

  Report report_;
  std::mutex adding_;
  std::vector<std::unique_ptr<Table>> all_;
  std::atomic<BlockCache*> cache_ = nullptr;
  std::unique_ptr<BlockCache> ownedCache_;
  std::array<std::atomic<Table*>, static_cast<std::size_t>(Material::SIDES) * Material::SIDES>
      tables_{};
};

}  // namespace bitbases
