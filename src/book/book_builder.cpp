#include "book/book_builder.h"

#include <cstdio>
#include <optional>

#include "book/book_build.h"
#include "util/ini_file.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr const char* RULE = "---------------------";

void printSettings(const BuildSettings& settings, const BuildSources& sources,
                   const std::string& iniFile, const std::string& bookFile) {
  constexpr std::size_t MOST_NAMES = 10;
  print(stdout, "Book configuration\n%s\n", RULE);
  for (std::size_t i = 0; i < sources.files.size() && i < MOST_NAMES; ++i) {
    print(stdout, "pgnfile    = %s\n", sources.files[i].name.c_str());
  }
  if (sources.files.size() > MOST_NAMES) {
    print(stdout, "             and %zu more\n", sources.files.size() - MOST_NAMES);
  }
  print(stdout, "inifile    = %s\n", iniFile.c_str());
  print(stdout, "bookfile   = %s\n", bookFile.c_str());
  for (const IniRow<BuildSettings>& row : BuildSettings::rows()) {
    if (const std::optional<double> number = row.number(settings)) {
      print(stdout, "%-11s= %4.0f\n", row.name().c_str(), *number);
    }
  }
  for (const IniRow<BuildSettings>& row : BuildSettings::extraRows()) {
    const double number = row.number(settings).value_or(0);
    if (number != 0) print(stdout, "%-11s= %4.0f\n", row.name().c_str(), number);
  }
  print(stdout, "%s\n", RULE);
}

// True, and the reason on standard output, when the book would take the place of a source.
bool replacesSource(const BuildSources& sources, const std::string& bookFile) {
  for (const BuildSource& source : sources.files) {
    if (!isSameFile(source.name, bookFile)) continue;
    print(stdout, "the book would replace its source: %s\n", source.name.c_str());
    return true;
  }
  return false;
}

bool run(BookBuild& build, const BuildSources& sources, int maxGames) {
  if (sources.areBooks) return build.readBooks(sources);
  if (!build.readGames(sources, maxGames) || !build.reportGames()) return false;
  build.filter();
  return true;
}

}  // namespace

bool buildBook(Board& board, BuildRequest& request) {
  if (request.sources.empty() || request.sources.front().empty()) {
    print(stdout, "no pgnfile!\n");
    return false;
  }
  IniFile ini;
  std::string iniText = request.iniFile;
  if (!ini.load(request.iniFile)) {
    if (!request.mayLackIniFile) {
      print(stdout, "could not load inifile: %s\n", request.iniFile.c_str());
      return false;
    }
    iniText = "none, so these are the defaults";
  }
  const BuildSettings settings(ini);
  const PlaySettings play(ini);
  if (request.bookFile.empty()) request.bookFile = settings.file;
  if (request.bookFile.empty()) request.bookFile = bookNameFor(request.sources.front());
  const BuildSources sources = findSources(request.sources);
  if (sources.files.empty() || replacesSource(sources, request.bookFile)) return false;
  // A book that cannot be written is not worth the reading.
  BookOutput output(request.bookFile);
  if (!output.isOpen()) {
    print(stdout, "could not open file: %s\n", request.bookFile.c_str());
    return false;
  }
  printSettings(settings, sources, iniText, request.bookFile);
  if (settings.maxply <= 0) {
    print(stdout, "-->nothing to do: maxply=%i\n", settings.maxply);
    return false;
  }

  print(stdout, "\nprocessing...\n");
  BookBuild build(board, kindOfName(request.bookFile), settings, play);
  if (!run(build, sources, request.maxGames)) return false;
  build.sort();
  if (!sources.areBooks) build.thin();
  return build.save(output);
}

}  // namespace ombrin
