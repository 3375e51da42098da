#include "book/build_settings.h"

#include "util/scan.h"

namespace ombrin {

BuildSettings BuildSettings::read(const IniFile& ini) {
  BuildSettings settings;
  const auto read = [&ini](const char* name, auto& value, auto convert) {
    const RefString text = ini.get(std::string("book.build.") + name);
    if (!text.empty()) value = convert(text);
  };
  const auto number = [](const RefString& text) { return toInt(text.view()); };
  const auto percent = [](const RefString& text) { return toInt(text.view()) / 100.0; };
  read("file", settings.file, [](const RefString& text) { return text.view(); });
  read("minelo", settings.minelo, number);
  read("maxelodelta", settings.maxelodelta, number);
  read("minply", settings.minply, number);
  read("maxply", settings.maxply, number);
  read("mingames", settings.mingames, number);
  read("minquality", settings.minquality, number);
  read("minscorew", settings.minscorew, percent);
  read("minscoreb", settings.minscoreb, percent);
  read("keeppct", settings.keeppct, percent);
  return settings;
}

}  // namespace ombrin
