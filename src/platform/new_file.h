#pragma once

#include <string>

namespace ombrin {

enum class NewFile {
  CREATED,
  EXISTS,  // something of that name
  FAILED,
};

// Makes an empty file of that name, unless there is one: of several that try, one succeeds. Any
// thread.
NewFile createNewFile(const std::string& path);

}  // namespace ombrin
