#include "shell/book_arguments.h"

#include <algorithm>

#include "book/build_sources.h"
#include "util/scan.h"

namespace ombrin {

std::vector<std::string> splitWords(std::string_view text) {
  constexpr std::string_view BLANKS = " \t";
  std::vector<std::string> words;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    if (text.empty()) return words;
    const bool quoted = text.front() == '"';
    if (quoted) text.remove_prefix(1);
    const std::size_t end =
        std::min(quoted ? text.find('"') : text.find_first_of(BLANKS), text.size());
    words.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + (quoted ? 1 : 0), text.size()));
  }
}

BuildRequest readBuildRequest(std::string_view text, const std::string& iniFile) {
  BuildRequest request;
  request.sources = splitWords(text);
  request.iniFile = iniFile;
  request.mayLackIniFile = true;
  std::vector<std::string>& words = request.sources;
  const auto isNumber = [](const std::string& word) {
    return word.find_first_not_of("0123456789") == std::string::npos;
  };
  if (words.size() > 1 && isNumber(words.back())) {
    request.maxGames = toInt(words.back());
    words.pop_back();
  }
  if (words.size() > 1 && !isSourceName(words.back())) {
    request.iniFile = words.back();
    request.mayLackIniFile = false;
    words.pop_back();
  }
  return request;
}

}  // namespace ombrin
