#include <windows.h>

#include <limits>

#include "mapped_file.h"

namespace bitbases {

namespace {

std::size_t sizeOf(HANDLE file) {
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file, &size) == 0) return 0;
  const auto bytes = static_cast<unsigned long long>(size.QuadPart);
  return bytes <= std::numeric_limits<std::size_t>::max() ? static_cast<std::size_t>(bytes) : 0;
}

// Read-only, of the whole file; null when that is not possible, as for an empty file.
void* mapWhole(HANDLE file) {
  const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
  if (mapping == nullptr) return nullptr;
  void* const memory = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  CloseHandle(mapping);
  return memory;
}

}  // namespace

std::span<const std::byte> mapFile(const std::string& path) {
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  const std::size_t size = sizeOf(file);
  void* const memory = size > 0 ? mapWhole(file) : nullptr;
  CloseHandle(file);
  if (memory == nullptr) return {};
  return {static_cast<const std::byte*>(memory), size};
}

void unmapFile(std::span<const std::byte> bytes) {
  if (!bytes.empty()) UnmapViewOfFile(bytes.data());
}

void stayLoaded() {
  // By an address of this library's own. The reference is never given back.
  HMODULE self = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCSTR>(&stayLoaded), &self);
}

}  // namespace bitbases
