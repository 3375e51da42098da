// Tables of what is read from an ini file: one row says all there is to say about a setting.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "util/ini_file.h"

namespace ombrin {

// How the file writes a number. Percentages are fractions in the program.
enum class IniNumber { WHOLE, PERCENT, DECIMAL_PERCENT };

// The number that a value begins with, as the program has it; 0 when it begins with none.
double readIniNumber(IniNumber kind, std::string_view value);
// The number as the file has it.
double iniNumberOf(IniNumber kind, double number);

// One key of the file, for a structure that holds the settings.
template <typename Settings>
struct IniRow {
  std::string_view key;
  std::variant<std::string Settings::*, int Settings::*, double Settings::*> field;
  std::string_view absent;  // as the file would write it: what holds when it has nothing
  IniNumber kind = IniNumber::WHOLE;

  // The key's last word.
  std::string name() const { return std::string(key.substr(key.rfind('.') + 1)); }

  void read(const IniFile& ini, Settings& settings) const {
    const RefString text = ini.get(key);
    const std::string_view value = text.empty() ? absent : text.view();
    if (const auto* member = std::get_if<std::string Settings::*>(&field)) {
      settings.** member = value;
    } else if (const auto* whole = std::get_if<int Settings::*>(&field)) {
      settings.** whole = static_cast<int>(readIniNumber(kind, value));
    } else {
      settings.*std::get<double Settings::*>(field) = readIniNumber(kind, value);
    }
  }

  // The setting as the file would write it; nothing when it is a text.
  std::optional<double> number(const Settings& settings) const {
    if (const auto* whole = std::get_if<int Settings::*>(&field)) {
      return iniNumberOf(kind, settings.**whole);
    }
    const auto* member = std::get_if<double Settings::*>(&field);
    return member == nullptr ? std::nullopt : std::optional(iniNumberOf(kind, settings.**member));
  }
};

}  // namespace ombrin
