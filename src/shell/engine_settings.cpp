#include "shell/engine_settings.h"

namespace ombrin {

namespace {

using S = EngineSettings;
constexpr IniRow<S> ROWS[] = {
    {"book.file", &S::bookFile, ""},         {"uci.trace", &S::uciTrace, "0"},
    {"uci.logdir", &S::uciLogDirectory, ""}, {"winboard.logdir", &S::winboardLogDirectory, ""},
    {UCI_TIME_GAP_KEY, &S::uciTimeGap, "3"}, {WINBOARD_TIME_GAP_KEY, &S::winboardTimeGap, "3"},
    {TABLE_MB_KEY, &S::tableMb, "64"},       {"search.nthreads", &S::threads, "0"},
    {"egbb.dir", &S::bitbaseDirectory, ""},  {"egbb.cachemb", &S::bitbaseCacheMb, "16"},
    {"machine.mhz", &S::processorMhz, "0"},
};

}  // namespace

EngineSettings::EngineSettings(const IniFile& ini) {
  for (const IniRow<S>& row : ROWS) row.read(ini, *this);
}

std::span<const IniRow<EngineSettings>> EngineSettings::rows() {
  return ROWS;
}

}  // namespace ombrin
