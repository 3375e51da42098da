// File names are bytes, in the encoding in which the C library takes them. Where the system's own
// are something else, only these two know how to get from one to the other.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace ombrin {

// Any thread. Neither fails: what one side cannot express becomes a name that no file has.
std::filesystem::path pathOf(std::string_view name);
std::string nameOf(const std::filesystem::path& path);

}  // namespace ombrin
