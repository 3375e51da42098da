// What stands behind the console's commands for books.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "book/book_builder.h"

namespace ombrin {

// The words of the text; in double quotes, a word may hold blanks.
std::vector<std::string> splitWords(std::string_view text);

// Of "buildbook": the sources, then the name of an ini file, then the number of games; the last two
// may be missing. `iniFile` stands in for the name. Of several words, the last one that does not
// look like a source is the ini file's name.
BuildRequest readBuildRequest(std::string_view text, const std::string& iniFile);

}  // namespace ombrin
