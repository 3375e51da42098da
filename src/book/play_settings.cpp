#include "book/play_settings.h"

namespace ombrin {

namespace {

using S = PlaySettings;
constexpr IniRow<S> CRITERIA[] = {
    {"book.play.maxply", &S::maxply, "0"},
    {"book.play.mingames", &S::mingames, "2"},
    {"book.play.mingamepct", &S::mingamepct, "10", IniNumber::PERCENT},
    {"book.play.minelo", &S::minelo, "2700"},
    {"book.play.maxelodelta", &S::maxelodelta, "200"},
    {"book.play.minscorew", &S::minscorew, "50", IniNumber::PERCENT},
    {"book.play.minscoreb", &S::minscoreb, "40", IniNumber::PERCENT},
    {"book.play.maxscoredelta", &S::maxscoredelta, "5.0", IniNumber::DECIMAL_PERCENT},
};
constexpr IniRow<S> WEIGHTS[] = {
    {"book.play.gameweight", &S::gameweight, "100", IniNumber::PERCENT},
    {"book.play.eloweight", &S::eloweight, "100", IniNumber::PERCENT},
    {"book.play.scoreweight", &S::scoreweight, "0", IniNumber::PERCENT},
    {"book.play.winweight", &S::winweight, "0", IniNumber::PERCENT},
    {"book.play.drawweight", &S::drawweight, "0", IniNumber::PERCENT},
    {"book.play.minweight", &S::minweight, "10", IniNumber::PERCENT},
    {"book.play.random", &S::random, "100", IniNumber::PERCENT},
};

}  // namespace

PlaySettings::PlaySettings(const IniFile& ini) {
  for (const IniRow<S>& row : CRITERIA) row.read(ini, *this);
  for (const IniRow<S>& row : WEIGHTS) row.read(ini, *this);
}

std::span<const IniRow<PlaySettings>> PlaySettings::criteria() {
  return CRITERIA;
}

std::span<const IniRow<PlaySettings>> PlaySettings::weights() {
  return WEIGHTS;
}

}  // namespace ombrin
