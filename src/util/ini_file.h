#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "util/ref_string.h"

namespace ombrin {

// Settings from "key=value" lines, in the order in which the keys first appeared. One thread at a
// time.
class IniFile {
 public:
  struct Entry {
    RefString key;
    RefString value;
  };

  // Adds the file's entries to what is there; a key that is there already takes the new value in
  // its old place. False, and nothing changed, when the file cannot be opened or is a directory;
  // false also when reading breaks off.
  bool load(const std::string& path);

  // The value of `key` (compared byte for byte), or the empty text. Shares the stored text.
  RefString get(std::string_view key) const;

  const std::vector<Entry>& entries() const { return entries_; }

 private:
  void readLine(std::string_view line);

  std::vector<Entry> entries_;
};

}  // namespace ombrin
