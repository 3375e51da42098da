#include <windows.h>

#include "platform/file_name.h"

namespace ombrin {

// The standard library would take the bytes for UTF-8, and throw at those that are none.
std::filesystem::path pathOf(std::string_view name) {
  const auto size = static_cast<int>(name.size());
  std::wstring wide(name.size(), L'\0');
  const int length = MultiByteToWideChar(CP_ACP, 0, name.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

std::string nameOf(const std::filesystem::path& path) {
  const std::wstring& wide = path.native();
  const auto size = static_cast<int>(wide.size());
  constexpr int MOST_BYTES = 4;  // of one character
  std::string name(wide.size() * MOST_BYTES, '\0');
  const int length = WideCharToMultiByte(CP_ACP, 0, wide.data(), size, name.data(),
                                         static_cast<int>(name.size()), nullptr, nullptr);
  name.resize(static_cast<std::size_t>(length));
  return name;
}

}  // namespace ombrin
