#include "platform/file_name.h"

namespace ombrin {

std::filesystem::path pathOf(std::string_view name) {
  return name;
}

std::string nameOf(const std::filesystem::path& path) {
  return path.string();
}

}  // namespace ombrin
