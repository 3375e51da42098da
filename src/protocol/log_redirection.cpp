#include "protocol/log_redirection.h"

#include "protocol/log_file_namer.h"
#include "util/file_system.h"
#include "util/log.h"

namespace ombrin {

LogRedirection::~LogRedirection() {
  for (const auto& file : files_) {
    std::FILE* current = file.get();
    logFile.compare_exchange_strong(current, stdout);
  }
}

std::optional<std::string> LogRedirection::nextName(std::string_view directory) {
  const LogFileNamer namer(directory);
  if (directory.empty() || !namer.prepareDirectory()) {
    logFile = nullptr;
    return std::nullopt;
  }
  return namer.nextFreeName();
}

std::FILE* LogRedirection::open(const std::string& name) {
  std::FILE* file = std::fopen(localPath(name).c_str(), "w");
  if (file != nullptr) files_.emplace_back(file);
  return file;
}

}  // namespace ombrin
