#include "protocol/winboard_log.h"

#include "platform/tick.h"
#include "util/format.h"
#include "util/print.h"

namespace ombrin {

void WinboardLog::open(std::FILE* file) {
  const std::lock_guard lock(mutex_);
  file_ = file;
  origin_ = tickCount();
}

void WinboardLog::write(std::string_view prefix, const char* status, std::string_view message) {
  const std::lock_guard lock(mutex_);
  if (file_ == nullptr) return;
  std::string line(prefix);
  append(line, "%011llu:[%s]: ", static_cast<unsigned long long>(tickCount() - origin_), status);
  line += message;
  if (!line.ends_with('\n')) line += '\n';
  print(file_, "%s", line.c_str());
  std::fflush(file_);
}

}  // namespace ombrin
