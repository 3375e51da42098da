#include "book/build_settings.h"

namespace ombrin {

namespace {

using S = BuildSettings;
constexpr IniRow<S> ROWS[] = {
    {"book.build.file", &S::file, ""},
    {"book.build.minelo", &S::minelo, "2300"},
    {"book.build.maxelodelta", &S::maxelodelta, "120"},
    {"book.build.minply", &S::minply, "32"},
    {"book.build.maxply", &S::maxply, "50"},
    {"book.build.mingames", &S::mingames, "4"},
    {"book.build.minquality", &S::minquality, "2700"},
    {"book.build.minscorew", &S::minscorew, "49", IniNumber::PERCENT},
    {"book.build.minscoreb", &S::minscoreb, "39", IniNumber::PERCENT},
    {"book.build.keeppct", &S::keeppct, "98", IniNumber::PERCENT},
};

}  // namespace

BuildSettings::BuildSettings(const IniFile& ini) {
  for (const IniRow<S>& row : ROWS) row.read(ini, *this);
}

std::span<const IniRow<BuildSettings>> BuildSettings::rows() {
  return ROWS;
}

}  // namespace ombrin
