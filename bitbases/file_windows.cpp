#include <windows.h>

#include "file.h"

namespace bitbases {

namespace {

HANDLE handleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

File::File(const std::string& path)
    : handle_(reinterpret_cast<std::intptr_t>(
          CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))) {
  LARGE_INTEGER size{};
  if (isOpen() && GetFileSizeEx(handleOf(handle_), &size) != 0) {
    size_ = static_cast<std::uint64_t>(size.QuadPart);
  }
}

File::~File() {
  if (isOpen()) CloseHandle(handleOf(handle_));
}

bool File::isOpen() const {
  return handleOf(handle_) != INVALID_HANDLE_VALUE;
}

bool File::read(std::uint64_t offset, std::span<std::byte> bytes) const {
  while (!bytes.empty()) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    constexpr std::size_t MOST = 1U << 30;
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(bytes.size() < MOST ? bytes.size() : MOST);
    if (ReadFile(handleOf(handle_), bytes.data(), wanted, &count, &place) == 0 || count == 0) {
      return false;
    }
    bytes = bytes.subspan(count);
    offset += count;
  }
  return true;
}

void stayLoaded() {
  // By an address of this library's own. The reference is never given back.
  HMODULE self = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCSTR>(&stayLoaded), &self);
}

}  // namespace bitbases
