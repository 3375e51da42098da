#include <windows.h>

#include "platform/shared_library.h"

namespace ombrin {

SharedLibrary::~SharedLibrary() {
  close();
}

bool SharedLibrary::open(const std::string& path) {
  close();
  std::string file = path;
  // The loader looks in the system's directories for a name without a separator.
  if (file.find_first_of("/\\") == std::string::npos) file.insert(0, ".\\");
  // A file that is no library for this processor is an answer, not a box to click away.
  DWORD mode = 0;
  const BOOL isQuiet = SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode);
  handle_ = LoadLibraryA(file.c_str());
  if (isQuiet != 0) SetThreadErrorMode(mode, nullptr);
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
