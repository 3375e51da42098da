#include "book/play_settings.h"

#include "util/scan.h"

namespace ombrin {

PlaySettings PlaySettings::read(const IniFile& ini) {
  PlaySettings settings;
  const auto read = [&ini](const char* name, auto& value, auto convert) {
    const RefString text = ini.get(std::string("book.play.") + name);
    if (!text.empty()) value = convert(text);
  };
  const auto number = [](const RefString& text) { return toInt(text.view()); };
  const auto percent = [](const RefString& text) { return toInt(text.view()) / 100.0; };
  const auto realPercent = [](const RefString& text) {
    std::string_view rest = text.view();
    return takeDecimal(rest).value_or(0) / 100.0;
  };
  read("maxply", settings.maxply, number);
  read("mingames", settings.mingames, number);
  read("mingamepct", settings.mingamepct, percent);
  read("minelo", settings.minelo, number);
  read("maxelodelta", settings.maxelodelta, number);
  read("minscorew", settings.minscorew, percent);
  read("minscoreb", settings.minscoreb, percent);
  read("maxscoredelta", settings.maxscoredelta, realPercent);
  read("gameweight", settings.gameweight, percent);
  read("eloweight", settings.eloweight, percent);
  read("scoreweight", settings.scoreweight, percent);
  read("winweight", settings.winweight, percent);
  read("drawweight", settings.drawweight, percent);
  read("minweight", settings.minweight, percent);
  read("random", settings.random, percent);
  return settings;
}

}  // namespace ombrin
