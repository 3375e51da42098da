#include "book/build_settings.h"

#include "platform/machine_memory.h"

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
constexpr IniRow<S> EXTRA_ROWS[] = {
    {"book.build.maxmb", &S::maxmb, "0"},
    {"book.build.showboard", &S::showboard, "0"},
};

}  // namespace

BuildSettings::BuildSettings(const IniFile& ini) {
  for (const IniRow<S>& row : ROWS) row.read(ini, *this);
  for (const IniRow<S>& row : EXTRA_ROWS) row.read(ini, *this);
}

std::uint64_t BuildSettings::mostBytes() const {
  if (maxmb > 0) return static_cast<std::uint64_t>(maxmb) << 20;
  const std::uint64_t memory = machineMemory();
  return memory == 0 ? UINT64_MAX : memory / 3 * 2;
}

std::span<const IniRow<BuildSettings>> BuildSettings::rows() {
  return ROWS;
}

std::span<const IniRow<BuildSettings>> BuildSettings::extraRows() {
  return EXTRA_ROWS;
}

}  // namespace ombrin
