// The operating system's part: files as memory, and the library's stay in it.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace bitbases {

// The bytes of a whole file, read-only and shared with other processes; empty when it cannot be
// opened or has no bytes. They stay until unmapFile().
std::span<const std::byte> mapFile(const std::string& path);
void unmapFile(std::span<const std::byte> bytes);

// Keeps the library that this code is in loaded for the rest of the process, whoever closes it.
void stayLoaded();

}  // namespace bitbases
