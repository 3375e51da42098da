#include "util/ini_table.h"

#include "util/scan.h"

namespace ombrin {

double readIniNumber(IniNumber kind, std::string_view value) {
  switch (kind) {
    case IniNumber::PERCENT:
      return toInt(value) / 100.0;
    case IniNumber::DECIMAL_PERCENT:
      return takeDecimal(value).value_or(0) / 100;
    case IniNumber::WHOLE:
      break;
  }
  return toInt(value);
}

double iniNumberOf(IniNumber kind, double number) {
  return kind == IniNumber::WHOLE ? number : number * 100;
}

}  // namespace ombrin
