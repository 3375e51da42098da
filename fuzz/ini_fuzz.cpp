#include <unistd.h>

#include <string>

#include "fuzz_input.h"
#include "util/ini_file.h"
#include "util/scan.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static const std::string path = "/tmp/ombrin-ini-fuzz-" + std::to_string(getpid());
  std::FILE* file = std::fopen(path.c_str(), "wb");
  require(file != nullptr, "there is a temporary file");
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  IniFile ini;
  require(ini.load(path), "a file that exists is loaded");
  for (const IniFile::Entry& entry : ini.entries()) {
    require(entry.key.view().find('=') == std::string_view::npos, "keys end at the first =");
    require(ini.get(entry.key.view()) == entry.value.view(), "every key finds its value");
    toInt(entry.value.view());
  }
  unlink(path.c_str());
  return 0;
}
