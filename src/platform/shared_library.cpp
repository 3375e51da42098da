#include "platform/shared_library.h"

#include <dlfcn.h>

#include <algorithm>

namespace ombrin {

SharedLibrary::~SharedLibrary() {
  close();
}

bool SharedLibrary::open(const std::string& path) {
  close();
  std::string name = path;
  std::replace(name.begin(), name.end(), '\\', '/');
  if (name.find('/') == std::string::npos) name.insert(0, "./");
  handle_ = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  return isOpen();
}

void SharedLibrary::close() {
  if (isOpen()) dlclose(handle_);
  handle_ = nullptr;
}

void* SharedLibrary::symbol(const char* name) const {
  return isOpen() ? dlsym(handle_, name) : nullptr;
}

}  // namespace ombrin
