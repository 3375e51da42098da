#include "protocol/log_file_namer.h"

#include <cstdio>

#include "protocol/program_name.h"
#include "util/file_system.h"
#include "util/format.h"
#include "util/print.h"

namespace ombrin {

bool LogFileNamer::prepareDirectory() const {
  if (makeDirectories(directory_)) return true;
  print(stderr, "could not create logdir: %s\n", directory_.c_str());
  return false;
}

std::string LogFileNamer::nextFreeName() const {
  for (unsigned number = 0;; ++number) {
    std::string name = directory_;
    append(name, "/%s-%04u.log", PROGRAM_NAME, number);
    if (!fileExists(localPath(name))) return name;
  }
}

}  // namespace ombrin
