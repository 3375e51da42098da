#pragma once

#include <span>
#include <string>
#include <string_view>

#include "util/ini_file.h"
#include "util/ini_table.h"

namespace ombrin {

// The engine's own settings: all ini keys but those of playing from a book and of building one.
struct EngineSettings {
  // What is missing or empty in the file has its default.
  explicit EngineSettings(const IniFile& ini = IniFile());

  // The keys with their defaults.
  static std::span<const IniRow<EngineSettings>> rows();

  std::string bookFile;         // empty: none
  int uciTrace;                 // above 0: on
  std::string uciLogDirectory;  // empty: no log; as is the next
  std::string winboardLogDirectory;
  int uciTimeGap;  // seconds; as is the next
  int winboardTimeGap;
  int tableMb;
  int threads;                   // 0: as many as there are processors
  std::string bitbaseDirectory;  // empty: none
  int bitbaseCacheMb;
  int processorMhz;  // 0: not known
};

// Keys of which it matters whether the file has them.
inline constexpr std::string_view TABLE_MB_KEY = "tt.cachemb";
inline constexpr std::string_view UCI_TIME_GAP_KEY = "uci.timegap";
inline constexpr std::string_view WINBOARD_TIME_GAP_KEY = "winboard.timegap";

}  // namespace ombrin
