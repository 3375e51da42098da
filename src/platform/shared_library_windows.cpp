#include <windows.h>

#include <algorithm>

#include "platform/shared_library.h"

namespace ombrin {

SharedLibrary::~SharedLibrary() {
  close();
}

bool SharedLibrary::open(const std::string& path) {
  close();
  std::string file = path;
  std::replace(file.begin(), file.end(), '/', '\\');
  // The loader looks in the system's directories for a name without a separator.
  if (file.find('\\') == std::string::npos) file.insert(0, ".\\");
  handle_ = LoadLibraryA(file.c_str());
  return isOpen();
}

void SharedLibrary::close() {
  if (isOpen()) FreeLibrary(static_cast<HMODULE>(handle_));
  handle_ = nullptr;
}

void* SharedLibrary::symbol(const char* name) const {
  if (!isOpen()) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace ombrin
