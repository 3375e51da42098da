#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>

#include "full_table.h"
#include "material.h"

namespace bitbases {

// The tables of a directory as whole tables in memory, for the solver. Those of up to four men are
// kept once they have been asked for, those of five are not.
class TableStore {
 public:
  TableStore(std::string directory, int threads);

  // Null when the file is not there or not whole. One thread at a time.
  std::shared_ptr<const FullTable> table(const Material& material, Color side);
  TableSource source();

 private:
  std::shared_ptr<FullTable> load(const Material& material, Color side);
  std::shared_ptr<FullTable> exchanged(const Material& material, Color side);

  std::string directory_;
  int threads_;
  // By number and side.
  std::map<std::pair<int, Color>, std::shared_ptr<const FullTable>> kept_;
};

}  // namespace bitbases
