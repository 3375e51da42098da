#pragma once

#include <map>
#include <string>

#include "material.h"
#include "table_file.h"
#include "verifier.h"

namespace bitbases {

// The text file tables.txt of a directory: which of its tables have been checked, and what is in
// them, one line each.
class Record {
 public:
  explicit Record(const std::string& directory);

  // Has exactly this file been checked, and found right?
  bool has(const Material& material, const TableFile& file) const;
  // Adds the line of a table that is right, and writes the file. `seconds` is the time that the
  // table and its check took, or nothing (0) when it was there before. False when it cannot be
  // written.
  bool add(const Material& material, const TableFile& file, const Totals& totals, double seconds);

 private:
  std::string path_;
  // By number of men and name.
  std::map<std::pair<int, std::string>, std::string> lines_;
};

}  // namespace bitbases
