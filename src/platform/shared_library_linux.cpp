#include <dlfcn.h>

#include "platform/shared_library.h"

namespace ombrin {

SharedLibrary::~SharedLibrary() {
  close();
}

bool SharedLibrary::open(const std::string& path) {
  close();
  std::string file = path;
  // The loader looks in the system's directories for a name without a separator.
  if (file.find('/') == std::string::npos) file.insert(0, "./");
  handle_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  return isOpen();
}

void SharedLibrary::close() {
  if (handle_ != nullptr) dlclose(handle_);
  handle_ = nullptr;
}

void* SharedLibrary::symbol(const char* name) const {
  return handle_ != nullptr ? dlsym(handle_, name) : nullptr;
}

}  // namespace ombrin
