#pragma once

#include <string_view>

namespace ombrin {

// The two kinds of books.
enum class BookKind {
  OBK,       // this program's own: games, results and Elo of every move
  POLYGLOT,  // the one that most programs can exchange: a weight for every move
};

// What a file of that name is, or is to be: Polyglot's names end in ".bin", in letters of any case.
BookKind kindOfName(std::string_view name);

// Does the name end so, in letters of any case? `ending` is in lower case.
bool hasEnding(std::string_view name, std::string_view ending);

}  // namespace ombrin
