#include "book/book_kind.h"

#include <algorithm>

namespace ombrin {

bool hasEnding(std::string_view name, std::string_view ending) {
  if (name.size() < ending.size()) return false;
  name.remove_prefix(name.size() - ending.size());
  return std::ranges::equal(name, ending, [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

BookKind kindOfName(std::string_view name) {
  return hasEnding(name, ".bin") ? BookKind::POLYGLOT : BookKind::OBK;
}

}  // namespace ombrin
