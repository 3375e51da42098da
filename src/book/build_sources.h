// What a book is built from.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrin {

struct BuildSource {
  std::string name;         // "-" for standard input
  std::uint64_t bytes = 0;  // 0 when nobody knows
};

struct BuildSources {
  std::vector<BuildSource> files;
  bool areBooks = false;  // they are game collections otherwise

  // Of all files together; 0 when nobody knows.
  std::uint64_t bytes() const;
};

// Finds the files that the names stand for; a directory stands for all collections in it, in the
// order of their names. Empty, and the reason on standard output, when one of them cannot be read.
BuildSources findSources(const std::vector<std::string>& names);

// Does the name look like that of a source, and not like an ini file's?
bool isSourceName(const std::string& name);

// The source's name without directories and endings, with those of such a book.
std::string bookNameFor(std::string_view sourceName);

}  // namespace ombrin
