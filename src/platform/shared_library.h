#pragma once

#include <string>

namespace ombrin {

// A library that is loaded into the process at run time. The object owns it: functions looked up
// in it must not be called after it has been closed. One thread at a time.
class SharedLibrary {
 public:
  SharedLibrary() = default;
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;
  ~SharedLibrary();

  // Closes what was open and loads the library at `path`, which is a path even when it has no
  // directory part: the system's library directories are not searched. False when there is no such
  // library.
  bool open(const std::string& path);
  bool isOpen() const { return handle_ != nullptr; }
  void close();

  // The function of that name, or null; the caller knows its type.
  template <typename Function>
  Function* function(const char* name) const {
    return reinterpret_cast<Function*>(symbol(name));
  }

 private:
  void* symbol(const char* name) const;

  void* handle_ = nullptr;
};

}  // namespace ombrin
